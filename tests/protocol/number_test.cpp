#include "protocol/number.h"

#include <gtest/gtest.h>

#include <limits>
#include <tuple>
#include <utility>

#include "platform/run_time_error.h"

namespace {

TEST(NumberTest, TextIsReadUpToTheFirstCharacterThatCannotContinueANumber) {
  const std::pair<std::string_view, double> cases[] = {
      {"  12.50", 12.5}, {"-  12.5", -12.5}, {"+7", 7},   {"1 2", 1},     {"", 0},         {"LB", 0},
      {"-", 0},          {".5", 0.5},        {"5.", 5},   {"1.2.3", 1.2}, {"1E3", 1000},   {"1E", 1},
      {"1E+X", 1},       {"2e-2kg", 0.02},   {"- -5", 0}, {"\x02 12", 0}, {"000123", 123}, {"1E999", 0}};
  for (const auto& [text, value] : cases) EXPECT_EQ(NumericValue(text), value) << "'" << text << "'";
}

TEST(NumberTest, GeneralFormHasFifteenDigitsAndAnExponentOnlyAtTheEnds) {
  const std::pair<double, std::string_view> cases[] = {
      {-0.5, "-0.5"},
      {-0.0, "0"},
      {0.1 + 0.2, "0.3"},
      {0.0001, "0.0001"},
      {0.00001, "1E-05"},
      {120, "120"},
      {999999999999999, "999999999999999"},
      {1e15, "1E+15"},
      {-1.25e100, "-1.25E+100"},
      {100000000000000.5, "100000000000001"}};  // ties go away from zero
  for (const auto& [value, text] : cases) EXPECT_EQ(GeneralText(Decimal::FromDouble(value)).View(), text);
  EXPECT_THROW(Decimal::FromDouble(std::numeric_limits<double>::quiet_NaN()), RunTimeError);
  EXPECT_THROW(Decimal::FromDouble(std::numeric_limits<double>::infinity()), RunTimeError);
}

TEST(NumberTest, PictureKeepsRequiredDigitsAndRoundsTiesAwayFromZeroOnTheDecimalText) {
  const std::tuple<double, std::string_view, std::string_view> cases[] = {{0, "#####0", "0"},
                                                                          {0, "###0.00", "0.00"},
                                                                          {12.5, "###0.00", "12.50"},
                                                                          {1.005, "0.00", "1.01"},
                                                                          {-1.005, "0.00", "-1.01"},
                                                                          {-0.001, "0.00", "0.00"},
                                                                          {1234567, "#0", "1234567"},
                                                                          {5, "####00", "05"},
                                                                          {0.5, "##.#", ".5"},
                                                                          {12, "##.#", "12."},
                                                                          {0, "####", ""},
                                                                          {12.5, "#", "13"},
                                                                          {12.5, "", "12.5"},
                                                                          {99.999, "0.00", "100.00"},
                                                                          {1e20, "0.0", "100000000000000000000.0"}};
  for (const auto& [value, mask, text] : cases) {
    EXPECT_EQ(FormatNumber(Decimal::FromDouble(value), mask).View(), text) << value << " by " << mask;
  }
}

}  // namespace
