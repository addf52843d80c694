#include "protocol/weight_format.h"

#include <gtest/gtest.h>

#include <tuple>

#include "tests/support/test_plant.h"

namespace {

constexpr int kProto = 12;

std::string Format(Tables& tables, std::string value) {
  FormatValue(tables, 0, value, tables.ProtoDecimalCode[kProto], "", kProto);
  return value;
}

TEST(WeightFormatTest, TheFirstFieldSettlesTheMaskByItsPoint) {
  const std::tuple<std::string, std::string, std::string, int> cases[] = {{"  12.50", "  12.50", "###0.00", -2},
                                                                          {"001250", "  1250", "#####0", 0},
                                                                          {"12.5   ", "   12.5", "####0.0", -1},
                                                                          {"- 12.50", " -12.50", "###0.00", -2},
                                                                          {"12345.678", "12345.678", "##0.000", -3},
                                                                          {"   12.", "    12", "", 7},
                                                                          {"1.234567", "1.234567", "", 7},
                                                                          {"", "", "#####0", 0},
                                                                          {"lb", " 0", "#####0", 0},
                                                                          {"1.2.3", "1.200", "##0.000", -3}};
  for (const auto& [field, shown, mask, decimals] : cases) {
    TestPlant plant;
    plant.tables.ChanDecimals[0] = 7;  // stays where no point place is known
    EXPECT_EQ(Format(plant.tables, field), shown) << field;
    EXPECT_EQ(plant.tables.ChanFormatMask[0], mask) << field;
    EXPECT_EQ(plant.tables.ChanDecimals[0], decimals) << field;
  }
}

TEST(WeightFormatTest, ASettledMaskStaysAndAResultTooLongLosesItsLeft) {
  TestPlant plant;
  Format(plant.tables, "  12.50");
  EXPECT_EQ(Format(plant.tables, "   1250"), "1250.00");
  EXPECT_EQ(Format(plant.tables, "  12505"), "2505.00") << "seven characters, whatever the number";
  EXPECT_EQ(Format(plant.tables, "12.345"), " 12.35");
  EXPECT_EQ(Format(plant.tables, "-0.001"), "  0.00");
}

TEST(WeightFormatTest, StatusDecimalsWriteThePointIntoTheField) {
  const std::tuple<int, std::string, std::string, std::string> cases[] = {
      {-2, "001250", "", " 12.50"},   {-2, "123456", "", "234.56"},   {-5, "001250", "+", ".01250"},
      {-1, "000005", "", "   0.5"},   {0, "001250", "", "  1250"},    {1, "001250", "", " 12500"},
      {2, "  1250", "", "125000"},    {2, "123456", "", "345600"},    {2, "000000", "", "    00"},
      {-2, "001250", "-", " -12.50"}, {-2, "000000", "-", "  -0.00"}, {0, "123456", "-", "-123456"},
      {7, "001250", "", "     0"},    {-2, "      ", "", "  0.00"},
  };
  for (const auto& [code, field, polarity, shown] : cases) {
    TestPlant plant;
    plant.tables.ProtoFormatMask[kProto] = "#####0";
    std::string value = field;
    FormatDecimalPlaces(plant.tables, value, code, polarity, kProto);
    EXPECT_EQ(value, shown) << code << " on " << field;
  }
}

}  // namespace
