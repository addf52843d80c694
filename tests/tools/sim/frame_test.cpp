#include "tools/sim/frame.h"

#include <gtest/gtest.h>

namespace {

Reading Weight(std::int64_t indicated, int decimals) {
  Reading reading;
  reading.indicated = indicated;
  reading.decimals = decimals;
  return reading;
}

TEST(SimulatedFrameTest, StatusCharactersCarryEveryStateOfTheScale) {
  Reading reading = Weight(1250, 2);
  reading.countBy = 5;
  EXPECT_EQ(EncodeFrame(FrameForm::Standard, reading, false),
            "\x02\x3C\x20\x20"
            "001250000000\r");
  reading.kilograms = true;
  reading.net = true;
  reading.tare = 400;
  EXPECT_EQ(EncodeFrame(FrameForm::Standard, reading, false),
            "\x02\x3C\x31\x20"
            "001250000400\r");
  EXPECT_EQ(EncodeFrame(FrameForm::Short, reading, true),
            "\x02\x3C\x31\x28"
            "001250\r");
  reading.indicated = -7;
  reading.motion = true;
  reading.outOfRange = true;
  EXPECT_EQ(EncodeFrame(FrameForm::Short, reading, false),
            "\x02\x3C\x3F\x20"
            "000007\r");
}

TEST(SimulatedFrameTest, EachDecimalPositionHasItsCode) {
  for (int decimals = -2; decimals <= 5; ++decimals) {
    const std::string frame = EncodeFrame(FrameForm::Short, Weight(12, decimals), false);
    EXPECT_EQ(frame[1] & 7, decimals + 2);
    EXPECT_EQ(frame.substr(4, 6), "000012");
  }
}

TEST(SimulatedFrameTest, AWeightThatTheDigitsCannotShowIsSentAsOutOfRange) {
  EXPECT_EQ(EncodeFrame(FrameForm::Short, Weight(100000, 1), false)[2] & 4, 4);
  EXPECT_EQ(EncodeFrame(FrameForm::Short, Weight(100000, 0), false)[2] & 4, 0);
  EXPECT_EQ(EncodeFrame(FrameForm::Short, Weight(10000, -2), false)[2] & 4, 4);
}

TEST(SimulatedFrameTest, AsciiFramesCarryThePointInTheData) {
  Reading reading = Weight(-1250, 2);
  reading.kilograms = true;
  EXPECT_EQ(EncodeFrame(FrameForm::Ascii, reading, false), "  -12.50 kg G \r\n");
  reading = Weight(12, -2);
  reading.motion = true;
  EXPECT_EQ(EncodeFrame(FrameForm::Ascii, reading, false), "    1200 lb GM\r\n");
}

}  // namespace
