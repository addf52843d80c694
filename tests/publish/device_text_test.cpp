#include "publish/device_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

#include "platform/run_time_error.h"

namespace {

TEST(DeviceTextTest, TheRunOfTildesLimitsTheParameterAndNeverPadsIt) {
  const std::tuple<std::string, double, std::string> cases[] = {
      {"T", 12.5, "T"},
      {"", 12.5, ""},
      {"W~~~~~~X", 12.5, "W12.5X"},
      {"W~~~~~~X", 7, "W7X"},
      {"W~~~X", 123456, "W456X"},
      {"W~~~X", -12, "W-12X"},
      {"W~~~X", -1234, "W234X"},
      {"W~~~X", 0, "W0X"},
      {"W~~~~X", 1234.56, "W4.56X"},  // "#.##" keeps the places, then the left is lost
      {"W~~X", 12.56, "W13X"},        // no room for a point in "##"
      {"W~~~~~X", 0.5, "W.5X"},
      {"A~B~C", 1234, "A234C"},  // the B is swallowed by the field
      {"AB~~", 1234, "AB4~"},    // the last one goes to the device as it is
      {"A~B~", 1234, "A4B~"},
      {"T~", 1234, "T4"},
      {"T~", 12.5, "T3"},
      {"~", 0, "0"}};
  for (const auto& [definition, parameter, text] : cases) {
    EXPECT_EQ(BuildDeviceText(definition, parameter, 0, 0).text, text) << definition << " with " << parameter;
  }
}

TEST(DeviceTextTest, StartAndTerminatorStandAroundTheTextAndOnesThatAreNoCharactersRaise) {
  EXPECT_EQ(BuildDeviceText("T", 0, 2, 3).text, "\x02T\x03");
  EXPECT_EQ(BuildDeviceText("T", 0, 0, 1310).text, "T\r\n");
  EXPECT_EQ(BuildDeviceText("T", 0, -1, -1).text, "T");
  EXPECT_THROW(BuildDeviceText("T", 0, 256, 0), RunTimeError);
  EXPECT_THROW(BuildDeviceText("T", 0, 0, 1013), RunTimeError);
  EXPECT_THROW(BuildDeviceText("T~~X", std::nan(""), 0, 0), RunTimeError);
}

}  // namespace
