#include "tools/sim/scale.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace sim;

namespace {

ScaleSettings FloorScale() {
  ScaleSettings settings;
  settings.kilograms = true;
  settings.capacity = 1000;
  settings.decimals = 1;
  settings.load = {{0, 2}, {250, 30}};
  return settings;
}

/// A scale that has come to rest under this load.
Scale AtRest(double load, ScaleSettings settings = FloorScale()) {
  settings.load = {{load, 10}};
  return Scale(settings, 1);
}

TEST(SimulatedScaleTest, ALoadSwingsBeyondItsWeightInMotionAndComesToRest) {
  Scale scale(FloorScale(), 1);
  scale.AdvanceTo(1.9);
  EXPECT_EQ(scale.Read().indicated, 0);
  EXPECT_FALSE(scale.Read().motion);

  std::int64_t highest = 0;
  for (double time = 2.1; time < 3; time += 0.05) {
    scale.AdvanceTo(time);
    highest = std::max(highest, scale.Read().indicated);
    EXPECT_TRUE(scale.Read().motion) << time;
  }
  EXPECT_NEAR(static_cast<double>(highest), 2500 * 1.15, 40) << "an overshoot of 15 %";
  scale.AdvanceTo(2 + 1.5);
  EXPECT_NEAR(static_cast<double>(scale.Read().indicated), 2500, 5) << "settled, but for a thousandth";
  scale.AdvanceTo(6);
  EXPECT_EQ(scale.Read().indicated, 2500);
  EXPECT_FALSE(scale.Read().motion);

  scale.AdvanceTo(32.2);
  EXPECT_TRUE(scale.Read().motion) << "the load goes again";
  scale.AdvanceTo(33.9);
  EXPECT_NEAR(static_cast<double>(scale.Read().indicated), 0, 5);
}

TEST(SimulatedScaleTest, EvenTheLightestDampingComesToRest) {
  ScaleSettings settings = FloorScale();
  settings.overshoot = 0.9;
  settings.settle = 0.05;
  Scale scale(settings, 1);
  scale.AdvanceTo(10);
  EXPECT_EQ(scale.Read().indicated, 2500);
}

TEST(SimulatedScaleTest, AHopperFillsInMotionAtAnEvenPace) {
  ScaleSettings settings = FloorScale();
  settings.overshoot = 0;
  settings.settle = 0.1;
  settings.load = {{100, 40, 20}, {0, 10}};
  Scale scale(settings, 1);
  for (const double time : {5.0, 10.0, 15.0}) {
    scale.AdvanceTo(time);
    EXPECT_NEAR(static_cast<double>(scale.Read().indicated), 50 * time, 5);
    EXPECT_TRUE(scale.Read().motion);
  }
  scale.AdvanceTo(22);
  EXPECT_EQ(scale.Read().indicated, 1000);
  EXPECT_FALSE(scale.Read().motion);
}

TEST(SimulatedScaleTest, TheDisplayRoundsToTheIncrementAndTiesAwayFromZero) {
  struct Case {
    int decimals;
    int countBy;
    double load;
    std::int64_t shown;
  };
  const Case cases[] = {
      {2, 1, 12.345, 1235}, {2, 1, 2.675, 268},   {2, 1, -2.675, -268}, {2, 1, 2.6749, 267},
      {1, 5, 0.25, 5},      {1, 5, 0.24, 0},      {1, 5, -0.74, -5},    {1, 2, 0.1, 2},
      {-1, 2, 33486, 3348}, {-1, 2, 33490, 3350}, {-2, 1, 150, 2},      {0, 5, 7.5, 10},
  };
  for (const Case& c : cases) {
    ScaleSettings settings;
    settings.capacity = 100000;
    settings.decimals = c.decimals;
    settings.countBy = c.countBy;
    EXPECT_EQ(AtRest(c.load, settings).Read().indicated, c.shown) << c.load << " by " << c.countBy;
  }
}

TEST(SimulatedScaleTest, TareAndZeroAreRefusedInMotion) {
  Scale scale(FloorScale(), 1);
  scale.AdvanceTo(2.2);
  ASSERT_TRUE(scale.Read().motion);
  EXPECT_FALSE(scale.Tare());
  EXPECT_FALSE(scale.Zero());
  scale.AdvanceTo(12);
  EXPECT_TRUE(scale.Tare());
}

TEST(SimulatedScaleTest, TareTakesTheGrossWeightAndGoesToNetMode) {
  Scale scale = AtRest(250);
  ASSERT_TRUE(scale.Tare());
  EXPECT_TRUE(scale.Read().net);
  EXPECT_EQ(scale.Read().indicated, 0);
  EXPECT_EQ(scale.Read().tare, 2500);
  EXPECT_FALSE(scale.Zero()) << "not in net mode";
  scale.ClearTare();
  EXPECT_FALSE(scale.Read().net);
  EXPECT_EQ(scale.Read().indicated, 2500);
  EXPECT_FALSE(AtRest(0).Tare());
  EXPECT_FALSE(AtRest(-3).Tare());
  EXPECT_FALSE(AtRest(1200).Tare());
}

TEST(SimulatedScaleTest, APresetTareIsRoundedToTheIncrementAndZeroClearsIt) {
  Scale scale = AtRest(250);
  EXPECT_FALSE(scale.PresetTare(-1));
  EXPECT_FALSE(scale.PresetTare(1001));
  EXPECT_FALSE(scale.Read().net);
  EXPECT_TRUE(scale.PresetTare(300.04));
  EXPECT_EQ(scale.Read().tare, 3000);
  EXPECT_EQ(scale.Read().indicated, -500);
  EXPECT_TRUE(scale.PresetTare(0));
  EXPECT_FALSE(scale.Read().net);
}

TEST(SimulatedScaleTest, ZeroReachesFourPercentOfTheCapacityFromTheZeroAtPowerUp) {
  ScaleSettings settings = FloorScale();
  settings.zeroError = -2.3;
  Scale scale = AtRest(0, settings);
  EXPECT_EQ(scale.Read().indicated, -23);
  EXPECT_TRUE(scale.Zero());
  EXPECT_EQ(scale.Read().indicated, 0);
  EXPECT_TRUE(AtRest(40).Zero());
  EXPECT_FALSE(AtRest(41).Zero());
}

TEST(SimulatedScaleTest, ALoadNineIncrementsBeyondTheCapacityIsOutOfRange) {
  EXPECT_FALSE(AtRest(1000.9).Read().outOfRange);
  EXPECT_TRUE(AtRest(1001).Read().outOfRange);
  EXPECT_TRUE(AtRest(-1001).Read().outOfRange);
}

TEST(SimulatedScaleTest, TheSameSeedGivesTheSameWeightsHoweverTimeIsCut) {
  ScaleSettings settings = FloorScale();
  settings.noise = 3;
  Scale fine(settings, 7), coarse(settings, 7), other(settings, 8);
  int different = 0;
  for (int step = 1; step <= 50; ++step) {
    for (int part = 1; part < 10; ++part) fine.AdvanceTo(0.3 * (step - 1) + 0.03 * part);
    fine.AdvanceTo(0.3 * step);
    coarse.AdvanceTo(0.3 * step);
    other.AdvanceTo(0.3 * step);
    ASSERT_EQ(fine.Read().indicated, coarse.Read().indicated) << step;
    different += other.Read().indicated != coarse.Read().indicated;
  }
  EXPECT_GT(different, 25);
}

}  // namespace
