#include "tools/sim/frame.h"

#include <gtest/gtest.h>

using namespace sim;

namespace {

Reading Weight(std::int64_t indicated, int decimals) {
  Reading reading;
  reading.indicated = indicated;
  reading.decimals = decimals;
  return reading;
}

TEST(SimulatedFrameTest, TheFramesAreTheSamplesOfTheFormatsDocument) {
  Reading net = Weight(1250, 2);
  net.kilograms = net.net = true;
  net.tare = 400;
  EXPECT_EQ(EncodeFrame(FrameForm::Standard, net, false),
            "\x02\x2C\x31\x20"
            "001250"
            "000400\r");
  Reading gross = Weight(1250, 2);
  gross.kilograms = true;
  EXPECT_EQ(EncodeFrame(FrameForm::Short, gross, false),
            "\x02\x2C\x30\x20"
            "001250\r");
}

TEST(SimulatedFrameTest, EachStateOfTheScaleHasItsBit) {
  struct Case {
    void (*change)(Reading&);
    bool print;
    std::string status;
  };
  const Case cases[] = {
      {[](Reading&) {}, false, "\x2C\x20\x20"},
      {[](Reading&) {}, true, "\x2C\x20\x28"},
      {[](Reading& r) { r.countBy = 2; }, false, "\x34\x20\x20"},
      {[](Reading& r) { r.countBy = 5; }, false, "\x3C\x20\x20"},
      {[](Reading& r) { r.net = true; }, false, "\x2C\x21\x20"},
      {[](Reading& r) { r.indicated = -1; }, false, "\x2C\x22\x20"},
      {[](Reading& r) { r.outOfRange = true; }, false, "\x2C\x24\x20"},
      {[](Reading& r) { r.motion = true; }, false, "\x2C\x28\x20"},
      {[](Reading& r) { r.kilograms = true; }, false, "\x2C\x30\x20"},
  };
  for (const Case& c : cases) {
    Reading reading = Weight(1250, 2);
    c.change(reading);
    for (const FrameForm form : {FrameForm::Standard, FrameForm::Short}) {
      EXPECT_EQ(EncodeFrame(form, reading, c.print).substr(1, 3), c.status);
    }
  }
}

TEST(SimulatedFrameTest, EachDecimalPositionHasItsCodeAndItsLargestWeight) {
  struct Case {
    int decimals;
    std::int64_t largest;
  };
  const Case cases[] = {{-2, 9'999}, {-1, 99'999}, {0, 999'999}, {1, 99'999},
                        {2, 99'999}, {3, 99'999},  {4, 99'999},  {5, 99'999}};
  for (const Case& c : cases) {
    const std::string frame = EncodeFrame(FrameForm::Short, Weight(c.largest, c.decimals), false);
    EXPECT_EQ(frame[1] & 7, c.decimals + 2);
    EXPECT_EQ(frame[2] & 4, 0);
    EXPECT_EQ(std::stol(frame.substr(4, 6)), c.largest);
    EXPECT_EQ(EncodeFrame(FrameForm::Short, Weight(c.largest + 1, c.decimals), false)[2] & 4, 4) << c.decimals;
  }
  EXPECT_EQ(EncodeFrame(FrameForm::Short, Weight(-1, 5), false)[2] & 4, 4) << "no room for a sign";
}

TEST(SimulatedFrameTest, AsciiFramesCarryThePointInTheDataAndKeepTheirColumns) {
  Reading reading = Weight(-1250, 2);
  reading.kilograms = true;
  EXPECT_EQ(EncodeFrame(FrameForm::Ascii, reading, true), "  -12.50 kg G P\r\n");
  reading = Weight(12, -2);
  reading.motion = reading.net = true;
  EXPECT_EQ(EncodeFrame(FrameForm::Ascii, reading, false), "    1200 lb NM \r\n");
  EXPECT_EQ(EncodeFrame(FrameForm::Ascii, Weight(-999'999, 5), false), "-9.99999 lb G  \r\n");
  EXPECT_EQ(EncodeFrame(FrameForm::Ascii, Weight(1'000'000, 5), false), "  ------ lb GO \r\n");
}

}  // namespace
