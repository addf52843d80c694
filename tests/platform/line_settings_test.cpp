#include "platform/posix/line_settings.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

TEST(LineSettings, EachOfTheFiftyFourSettingsSetsSpeedAndFrame) {
  const std::vector<std::pair<std::string, speed_t>> bauds = {{"1200", B1200}, {"2400", B2400},   {"4800", B4800},
                                                              {"9600", B9600}, {"19200", B19200}, {"38400", B38400}};
  const std::vector<std::pair<std::string, tcflag_t>> frames = {
      {"N,7,1", CS7},          {"O,7,1", CS7 | PARENB | PARODD},          {"E,7,1", CS7 | PARENB},
      {"N,7,2", CS7 | CSTOPB}, {"O,7,2", CS7 | CSTOPB | PARENB | PARODD}, {"E,7,2", CS7 | CSTOPB | PARENB},
      {"N,8,1", CS8},          {"o,8,1", CS8 | PARENB | PARODD},          {"e,8,1", CS8 | PARENB}};
  for (const auto& [baud, speed] : bauds) {
    for (const auto& [frame, flags] : frames) {
      const auto settings = ParseLineSettings(baud + "," + frame);
      ASSERT_TRUE(settings) << baud << "," << frame;
      const termios line = RawLine(*settings, false);
      EXPECT_EQ(line.c_cflag & (CSIZE | PARENB | PARODD | CSTOPB), flags) << frame;
      EXPECT_EQ(cfgetispeed(&line), speed) << baud;
      EXPECT_EQ(cfgetospeed(&line), speed) << baud;
    }
  }
}
