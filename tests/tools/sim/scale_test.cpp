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
  scale.AdvanceTo(6);
  EXPECT_EQ(scale.Read().indicated, 2500);
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

TEST(SimulatedScaleTest, TareAndZeroActAtRestAndInTheirRangeAlone) {
  Scale moving(FloorScale(), 1);
  moving.AdvanceTo(2.2);
  EXPECT_FALSE(moving.Tare() || moving.Zero());
  for (const double load : {0.0, -3.0, 1200.0}) EXPECT_FALSE(AtRest(load).Tare()) << load;
  EXPECT_TRUE(AtRest(40).Zero()) << "4 % of the capacity";
  EXPECT_FALSE(AtRest(41).Zero());

  Scale scale = AtRest(250);
  ASSERT_TRUE(scale.Tare());
  EXPECT_EQ(scale.Read().indicated, 0);
  EXPECT_EQ(scale.Read().tare, 2500);
  EXPECT_FALSE(scale.Zero()) << "not in net mode";
  EXPECT_FALSE(scale.PresetTare(1001));
  EXPECT_TRUE(scale.PresetTare(300.04));
  EXPECT_EQ(scale.Read().indicated, -500);
  scale.ClearTare();
  EXPECT_FALSE(scale.Read().net);
  EXPECT_EQ(scale.Read().indicated, 2500);
}

TEST(SimulatedScaleTest, ALoadNineIncrementsBeyondTheCapacityIsOutOfRange) {
  EXPECT_FALSE(AtRest(1000.9).Read().outOfRange);
  EXPECT_TRUE(AtRest(1001).Read().outOfRange);
  EXPECT_TRUE(AtRest(-1001).Read().outOfRange);
}

}  // namespace
