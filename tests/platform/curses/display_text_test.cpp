#include "platform/curses/display_text.h"

#include <gtest/gtest.h>

#include <clocale>

namespace {

struct DisplayCase {
  std::string_view text;
  int width;
  const wchar_t* shown;
};

TEST(DisplayTextTest, EveryTextFillsItsColumnsExactly) {
  ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
  const DisplayCase cases[] = {
      {"Silo", 6, L"Silo  "},
      {"Truck scale", 5, L"Truck"},
      {"W\xC3\xA4gung", 7, L"W\u00E4gung "},
      {"W\xE4gung", 7, L"W\u00E4gung "},            // Latin-1
      {"\xE7\xA7\xA4\xE9\x87\x8D", 3, L"\u79E4 "},  // two columns each: the second does not fit
      {"a\x07\x1B[2Jb", 8, L"a??[2Jb "},            // controls of the terminal are not for devices
      {std::string_view("a\0b", 3), 4, L"a?b "},
      {"", 2, L"  "},
      {"x", 0, L""},
      {"x", -3, L""},
  };
  for (const DisplayCase& each : cases) EXPECT_EQ(DisplayText(each.text, each.width), each.shown) << each.text;
}

}  // namespace
