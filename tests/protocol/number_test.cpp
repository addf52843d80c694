#include "protocol/number.h"

#include <gtest/gtest.h>

#include <limits>

#include "platform/run_time_error.h"

namespace {

struct ReadCase {
  std::string_view text;
  double value;
};

TEST(NumberTest, TextIsReadUpToTheFirstCharacterThatCannotContinueANumber) {
  const ReadCase cases[] = {
      {"  12.50", 12.5},
      {"-  12.5", -12.5},
      {"+7", 7},
      {"1 2", 1},
      {"", 0},
      {"LB", 0},
      {"-", 0},
      {".5", 0.5},
      {"5.", 5},
      {"1.2.3", 1.2},
      {"1E3", 1000},
      {"1E", 1},
      {"1E+X", 1},
      {"2e-2kg", 0.02},
      {"- -5", 0},
      {"\x02"
       "12",
       0},
      {"000123", 123},
      {"1E999", 0},
  };
  for (const ReadCase& c : cases) EXPECT_EQ(NumericValue(c.text), c.value) << "'" << c.text << "'";
}

TEST(NumberTest, GeneralFormHasFifteenDigitsAndAnExponentOnlyAtTheEnds) {
  const auto general = [](double value) { return std::string(GeneralText(Decimal::FromDouble(value)).View()); };
  EXPECT_EQ(general(12.5), "12.5");
  EXPECT_EQ(general(-0.5), "-0.5");
  EXPECT_EQ(general(-0.0), "0");
  EXPECT_EQ(general(0.1 + 0.2), "0.3");
  EXPECT_EQ(general(0.0001), "0.0001");
  EXPECT_EQ(general(0.00001), "1E-05");
  EXPECT_EQ(general(999999999999999), "999999999999999");
  EXPECT_EQ(general(1e15), "1E+15");
  EXPECT_EQ(general(-1.25e100), "-1.25E+100");
  EXPECT_EQ(general(100000000000000.5), "100000000000001") << "ties go away from zero";
  EXPECT_EQ(general(120), "120");
}

struct MaskCase {
  double value;
  std::string_view mask;
  std::string_view text;
};

TEST(NumberTest, PictureKeepsRequiredDigitsAndRoundsTiesAwayFromZeroOnTheDecimalText) {
  const MaskCase cases[] = {
      {0, "#####0", "0"},
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
      {0.04, "0.0", "0.0"},
      {1e20, "0.0", "100000000000000000000.0"},
  };
  for (const MaskCase& c : cases) {
    EXPECT_EQ(FormatNumber(Decimal::FromDouble(c.value), c.mask).View(), c.text) << c.value << " by " << c.mask;
  }
}

TEST(NumberTest, EveryPowerOfTenSurvivesTextAndBack) {
  for (int exponent = -300; exponent <= 300; ++exponent) {
    const double value = std::stod("1.25e" + std::to_string(exponent));
    EXPECT_EQ(Decimal::FromDouble(value).ToDouble(), value);
    EXPECT_EQ(NumericValue(GeneralText(Decimal::FromDouble(value)).View()), value);
  }
}

TEST(NumberTest, AValueThatIsNoNumberOverflowsInsteadOfBeingShown) {
  EXPECT_THROW(Decimal::FromDouble(std::numeric_limits<double>::quiet_NaN()), RunTimeError);
  EXPECT_THROW(Decimal::FromDouble(std::numeric_limits<double>::infinity()), RunTimeError);
}

TEST(NumberTest, RightAlignmentLosesCharactersOnTheLeft) {
  std::string value;
  RightAlign(value, "12.50", 7);
  EXPECT_EQ(value, "  12.50");
  RightAlign(value, "12345.67", 6);
  EXPECT_EQ(value, "345.67");
  RightAlign(value, "5", 0);
  EXPECT_EQ(value, "");
}

}  // namespace
