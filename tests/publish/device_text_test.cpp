#include "publish/device_text.h"

#include <gtest/gtest.h>

#include <cmath>

#include "platform/run_time_error.h"

namespace {

TEST(DeviceTextTest, TheRunOfTildesLimitsTheParameterAndNeverPadsIt) {
  struct Case {
    std::string definition;
    double parameter;
    std::string text;
    DeviceTextForm form;
  };
  const Case cases[] = {
      {"T", 12.5, "T", DeviceTextForm::Plain},
      {"", 12.5, "", DeviceTextForm::Plain},
      {"W~~~~~~X", 12.5, "W12.5X", DeviceTextForm::Wide},
      {"W~~~~~~X", 7, "W7X", DeviceTextForm::Wide},
      {"W~~~X", 123456, "W456X", DeviceTextForm::Wide},
      {"W~~~X", -12, "W-12X", DeviceTextForm::Wide},
      {"W~~~X", -1234, "W234X", DeviceTextForm::Wide},
      {"W~~~~X", 1234.56, "W4.56X", DeviceTextForm::Wide},  // "#.##" keeps the places, then the left is lost
      {"W~~X", 12.56, "W13X", DeviceTextForm::Wide},        // no room for a point in "##"
      {"W~~~~~X", 0.5, "W.5X", DeviceTextForm::Wide},
      {"W~~~X", 0, "W0X", DeviceTextForm::Wide},
      {"A~B~C", 1234, "A234C", DeviceTextForm::Wide},  // the B is swallowed by the field
      {"AB~~", 1234, "AB4~", DeviceTextForm::Wide},    // the last one goes to the device as it is
      {"A~B~", 1234, "A4B~", DeviceTextForm::Wide},
      {"T~", 1234, "T4", DeviceTextForm::Narrow},
      {"T~", 12.5, "T3", DeviceTextForm::Narrow},
      {"~", 0, "0", DeviceTextForm::Narrow},
  };
  for (const Case& c : cases) {
    const DeviceText device = BuildDeviceText(c.definition, c.parameter, 0, 0);
    EXPECT_EQ(device.text, c.text) << c.definition << " with " << c.parameter;
    EXPECT_EQ(device.form, c.form) << c.definition;
  }
}

TEST(DeviceTextTest, StartAndTerminatorCharactersStandAroundTheText) {
  EXPECT_EQ(BuildDeviceText("T", 0, 2, 3).text, "\x02T\x03");
  EXPECT_EQ(BuildDeviceText("T", 0, 0, 1310).text, "T\r\n");
  EXPECT_EQ(BuildDeviceText("T", 0, -1, -1).text, "T");
  EXPECT_EQ(BuildDeviceText("T", 0, 255, 0).text, "\xFFT");
}

TEST(DeviceTextTest, ACodeThatIsNoCharacterAndAParameterThatIsNoNumberRaise) {
  EXPECT_THROW(BuildDeviceText("T", 0, 256, 0), RunTimeError);
  EXPECT_THROW(BuildDeviceText("T", 0, 0, 1013), RunTimeError);
  EXPECT_THROW(BuildDeviceText("T~~X", std::nan(""), 0, 0), RunTimeError);
  EXPECT_EQ(BuildDeviceText("T", std::nan(""), 0, 0).text, "T");
}

}  // namespace
