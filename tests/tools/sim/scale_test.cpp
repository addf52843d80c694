#include "tools/sim/scale.h"

#include <gtest/gtest.h>

namespace {

ScaleSettings FloorScale() {
  ScaleSettings settings;
  settings.kilograms = true;
  settings.capacity = 1000;
  settings.decimals = 1;
  settings.load = {{0, 2}, {250, 30}};
  return settings;
}

TEST(SimulatedScaleTest, ALoadSwingsBeyondItsWeightInMotionAndComesToRest) {
  Scale scale(FloorScale(), 1);
  scale.Advance(1.9);
  EXPECT_EQ(scale.Read().indicated, 0);
  EXPECT_FALSE(scale.Read().motion);

  std::int64_t highest = 0;
  bool moved = false;
  for (int step = 0; step < 100; ++step) {
    scale.Advance(0.05);
    highest = std::max(highest, scale.Read().indicated);
    moved = moved || scale.Read().motion;
  }
  EXPECT_GT(highest, 2600) << "an overshoot of 15 % of 250.0";
  EXPECT_TRUE(moved);
  EXPECT_EQ(scale.Read().indicated, 2500);
  EXPECT_FALSE(scale.Read().motion);
}

TEST(SimulatedScaleTest, TareAndZeroAreTakenAtRestAlone) {
  Scale scale(FloorScale(), 1);
  scale.Advance(2.2);
  ASSERT_TRUE(scale.Read().motion);
  EXPECT_FALSE(scale.Tare());
  EXPECT_FALSE(scale.Zero());

  scale.Advance(10);
  ASSERT_TRUE(scale.Tare());
  EXPECT_TRUE(scale.Read().net);
  EXPECT_EQ(scale.Read().indicated, 0);
  EXPECT_EQ(scale.Read().tare, 2500);
  EXPECT_FALSE(scale.Zero()) << "not in net mode";
  scale.ClearTare();
  EXPECT_FALSE(scale.Zero()) << "250 of 1000 is no zero drift";

  EXPECT_FALSE(scale.PresetTare(-1));
  EXPECT_FALSE(scale.PresetTare(1001));
  EXPECT_TRUE(scale.PresetTare(300.04));
  EXPECT_EQ(scale.Read().tare, 3000);
  EXPECT_EQ(scale.Read().indicated, -500);
}

TEST(SimulatedScaleTest, AnEmptyPlatformIsZeroedAndALoadBeyondTheCapacityIsOutOfRange) {
  ScaleSettings settings = FloorScale();
  settings.zeroError = -2.3;
  settings.load.clear();
  Scale scale(settings, 1);
  scale.Advance(0.1);
  EXPECT_EQ(scale.Read().indicated, -23);
  EXPECT_TRUE(scale.Zero());
  EXPECT_EQ(scale.Read().indicated, 0);

  scale.PutOn(1000.9);
  scale.Advance(20);
  EXPECT_FALSE(scale.Read().outOfRange);
  scale.PutOn(1001.0);
  scale.Advance(20);
  EXPECT_TRUE(scale.Read().outOfRange);
}

}  // namespace
