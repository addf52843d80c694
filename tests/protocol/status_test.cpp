#include "protocol/status.h"

#include <gtest/gtest.h>

#include "tests/support/test_plant.h"

namespace {

constexpr int kProto = 12;

/// What one status row makes of one stream.
struct RowCase {
  std::vector<std::string> cells;  // name, DDE field, position, length, mask, enable
  std::string stream;
  bool matches;
};

/// The rows under test feed an error name, which shows a match whatever the path.
bool Matches(const RowCase& c) {
  TestPlant plant;
  plant.AddStatusRow(kProto, c.cells);
  ParseStatusData(plant.tables, c.stream, 0, kProto);
  return !plant.tables.ChanError[0].empty();
}

std::string Describe(const RowCase& c) {
  return "position " + c.cells[2] + " length " + c.cells[3] + " mask " + c.cells[4] + " on '" + c.stream + "'";
}

TEST(StatusTest, ATextRowMatchesExactlyAndDemandsOneCharacterMoreThanItsField) {
  const RowCase cases[] = {
      {{"Fault", "0 / ERROR", "1", "2", "OL", "X"}, "OL\r", true},
      {{"Fault", "0 / ERROR", "1", "2", "OL", "X"}, "OL", false},
      {{"Fault", "0 / ERROR", "2", "2", "OL", "X"}, "xOL\r", true},
      {{"Fault", "0 / ERROR", "1", "2", "ol", "X"}, "OL\r", false},
      {{"Fault", "0 / ERROR", "0", "2", "OL", "X"}, "OL\r", false},
      {{"Fault", "0 / ERROR", "0", "2", "", "X"}, "OL\r", true},
      {{"Fault", "0 / error", "1", "2", "OL", "X"}, "OL\r", true},
      {{"Fault", "0 / ERROR", "1", "2", "OL", "x"}, "OL\r", false},
      {{"Fault", "0 / ERROR", "1", "2", "OL", ""}, "OL\r", false},
  };
  for (const RowCase& c : cases) EXPECT_EQ(Matches(c), c.matches) << Describe(c);
}

TEST(StatusTest, AByteRowComparesItsBitsInPlace) {
  const RowCase cases[] = {
      {{"Fault", "0 / ERROR", "1", "1", "65", "X"}, "A\r", true},
      {{"Fault", "0 / ERROR", "1", "0", "65", "X"}, "A\r", true},
      {{"Fault", "0 / ERROR", "1", "", "65", "X"}, "A\r", true},
      {{"Fault", "0 / ERROR", "1", "1", "65", "X"}, "\xC1\r", true},  // the top bit is parity
      {{"Fault", "0 / ERROR", "1", "1b8", "65", "X"}, "\xC1\r", false},
      {{"Fault", "0 / ERROR", "1", "1b8", "193", "X"}, "\xC1\r", true},
      {{"Fault", "0 / ERROR", "4b3", "1b2", "8", "X"}, "   \x28\r", true},  // bits 3 and 4 of character 4
      {{"Fault", "0 / ERROR", "4b3", "1b2", "8", "X"}, "   \x38\r", false},
      {{"Fault", "0 / ERROR", "4b3", "1b2", "1", "X"}, "   \x28\r", false},  // not shifted down
      {{"Fault", "0 / ERROR", "1b6", "1b4", "192", "X"}, "\xFF\r", true},    // bits above 7 do not exist
      {{"Fault", "0 / ERROR", "1b3", "1b0", "0", "X"}, "\xFF\r", true},      // no bits: always zero
      {{"Fault", "0 / ERROR", "1b", "1b", "0", "X"}, "\xFF\r", true},
      {{"Fault", "0 / ERROR", "1b1", "1", "2", "X"}, "\x03\r", true},  // bits 1 to 7
      {{"Fault", "0 / ERROR", "1b1", "1", "128", "X"}, "\x81\r", true},
      {{"Fault", "0 / ERROR", "1B3", "1b1", "8", "X"}, "\x08\r", false},  // only a small b makes a partial field
      {{"Fault", "0 / ERROR", "2", "1", "0", "X"}, "A", true},            // a short stream reads as a zero byte
      {{"Fault", "0 / ERROR", "1", "1", "65", "X"}, "A", false},
      {{"Fault", "0 / ERROR", "0", "1", "0", "X"}, "A\r", true},
      {{"Fault", "0 / ERROR", "1", "1", "none", "X"}, std::string("\0\r", 2), true},
      {{"Fault", "0 / ERROR", "1", "1", "65.5", "X"}, "A\r", false},
      {{"Fault", "0 / ERROR", "1", "1", "321", "X"}, "A\r", false},
      {{"Fault", "0 / ERROR", "-3", "1", "65", "X"}, "A\r", false},
      {{"Fault", "0 / ERROR", "999999999999", "1", "65", "X"}, "A\r", false},
  };
  for (const RowCase& c : cases) EXPECT_EQ(Matches(c), c.matches) << Describe(c);
}

/// State of the channel behind a walk of one matching row, as one line of text.
std::string EffectOf(const std::string& name, const std::string& field, bool text) {
  TestPlant plant;
  Tables& t = plant.tables;
  plant.AddStatusRow(kProto, {name, field, "1", text ? "2" : "1", text ? "AA" : "65", "X"});
  t.ChanMotion[0] = name == "Stable" ? True : False;
  ParseStatusData(t, "AA\r", 0, kProto);
  std::string effect = "bits=" + std::to_string(t.ChanStatusBits[0]);
  if (t.ChanMotion[0] == True) effect += " motion";
  for (const std::string* value : {&t.ChanMode[0], &t.ChanUnits[0], &t.ChanError[0], &t.ProtoPolarity[kProto]}) {
    if (!value->empty()) effect += " " + *value;
  }
  for (int row = 0; row <= 10; ++row) {
    if (!t.ChanStatusN[row][0].empty()) effect += " status" + std::to_string(row) + "=" + t.ChanStatusN[row][0];
  }
  if (t.ChanStatusDecimals[0] == True && t.ChanDecimalsKnown[0] == True) {
    effect += " decimals=" + std::to_string(t.ChanDecimals[0]) + "/" + std::to_string(t.ProtoDecimalCode[kProto]);
  }
  if (!t.ChanMatchName[0].empty()) effect += " match=" + t.ChanMatchName[0] + "," + t.ChanMatchField[0];
  return effect;
}

TEST(StatusTest, ARowFeedsTheFieldItNames) {
  struct Case {
    std::string name, field, byteEffect, textEffect;
  };
  const Case cases[] = {
      {"Motion", "1 / MOTION", "bits=2 motion", "bits=2 motion"},
      {"Stable", "1 / Motion", "bits=0", "bits=0"},
      {"motion", "1 / MOTION", "bits=0", "bits=0"},
      {"Gross Mode", "2 / MODE", "bits=0 GROSS", "bits=0 GROSS"},
      {"Net Mode", "2 / MODE", "bits=4 NET", "bits=4 NET"},
      {"LB", "3 / UNITS", "bits=8 LB", "bits=8 LB"},
      {"Troy Ounces", "3 / UNITS", "bits=0 TROY OUNCES", "bits=0 TROY OUNCES"},
      {"Custom Units", "3 / UNITS", "bits=0 CUSTOM UNITS", "bits=0 CUSTOM UNITS"},
      {"Custom Units1", "3 / UNITS", "bits=0", "bits=0"},
      {"MilliGrams", "3 / UNITS", "bits=0", "bits=0"},
      {"Pieces", "3 / UNITS", "bits=0", "bits=0"},
      {"Out Of Range", "0 / ERROR", "bits=1 OUT OF RANGE", "bits=1 OUT OF RANGE"},
      {"Out of Range", "0 / ERROR", "bits=0 OUT OF RANGE", "bits=0 OUT OF RANGE"},
      {"Decimal Place XXXX00", "(WEIGHT)", "bits=0 decimals=2/2", "bits=0 match=Decimal Place XXXX00,(WEIGHT)"},
      {"Decimal Place X.XXXXX", "(WEIGHT)", "bits=0 decimals=-5/-5", "bits=0 match=Decimal Place X.XXXXX,(WEIGHT)"},
      {"Polarity Sign Negative -", "(WEIGHT)", "bits=0 -", "bits=0 match=Polarity Sign Negative -,(WEIGHT)"},
      {"Polarity Sign Positive +", "(WEIGHT)", "bits=0 +", "bits=0 match=Polarity Sign Positive +,(WEIGHT)"},
      {"Net Mode", "(WEIGHT)", "bits=0", "bits=0 match=Net Mode,(WEIGHT)"},
      {"Print Request", "4 / STATUS1", "bits=0 status1=PRINT REQUEST", "bits=0 match=Print Request,4 / STATUS1"},
      {"User9", "STATUS9", "bits=0 status9=USER9", "bits=0 match=User9,STATUS9"},
      {"User1", "INVALIDATE", "bits=0", "bits=0 match=User1,INVALIDATE"},
      {"=> Gross", "2 / MODE", "bits=0", "bits=0 match==> GROSS,2 / MODE"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(EffectOf(c.name, c.field, false), c.byteEffect) << c.name;
    EXPECT_EQ(EffectOf(c.name, c.field, true), c.textEffect) << c.name;
  }
}

TEST(StatusTest, TheFirstUnitsRowThatMatchesWins) {
  TestPlant plant;
  plant.AddStatusRow(kProto, {"Pieces", "3 / UNITS", "1", "1", "65", "X"});
  plant.AddStatusRow(kProto, {"KG", "3 / UNITS", "1", "1", "65", "X"});
  plant.AddStatusRow(kProto, {"LB", "3 / UNITS", "1", "1", "65", "X"});
  ParseStatusData(plant.tables, "A\r", 0, kProto);
  EXPECT_EQ(plant.tables.ChanUnits[0], "KG");
  EXPECT_EQ(plant.tables.ChanStatusBits[0], 0);
}

TEST(StatusTest, TheWalkStopsBehindTheRowAtTheStatusCount) {
  TestPlant plant;
  for (int row = 0; row < 3; ++row) {
    plant.AddStatusRow(kProto,
                       {row == 1 ? "Motion" : "Net Mode", row == 1 ? "1 / MOTION" : "2 / MODE", "1", "1", "65", "X"});
  }
  const std::pair<int, int> bitsByCount[] = {{-1, 0}, {0, 4}, {1, 6}, {100, 6}};
  for (const auto& [count, bits] : bitsByCount) {
    plant.tables.ProtoStatusCount[kProto] = count;
    plant.tables.ChanStatusBits[0] = 16;
    ParseStatusData(plant.tables, "A\r", 0, kProto);
    EXPECT_EQ(plant.tables.ChanStatusBits[0], bits) << count;
  }
}

TEST(StatusTest, ARowFollowsEachChangeOfItsCells) {
  TestPlant plant;
  StatusTable& table = plant.tables.ProtoStatusTable[kProto];
  plant.AddStatusRow(kProto, {"Motion", "1 / MOTION", "1", "1", "65", "X"});
  const auto bits = [&] {
    ParseStatusData(plant.tables, "AB\r", 0, kProto);
    return plant.tables.ChanStatusBits[0];
  };
  EXPECT_EQ(bits(), 2);
  const std::pair<int, std::string> changes[] = {{4, "66"}, {2, "2"}, {3, "2"}, {4, "B\r"}, {5, ""}, {5, "X"}};
  const int expected[] = {0, 2, 0, 0, 0, 0};
  for (int index = 0; index < 6; ++index) {
    table.SetCell(0, changes[index].first, changes[index].second);
    EXPECT_EQ(bits(), expected[index]) << index;
  }
  table.Clear();
  table.SetCell(0, 5, "X");
  EXPECT_EQ(bits(), 0) << "a cleared row keeps nothing of its old numbers";
}

}  // namespace
