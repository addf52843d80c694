#include "protocol/status.h"

#include <gtest/gtest.h>

#include "tests/support/test_plant.h"

namespace {

constexpr int kProto = 12;

/// What one status row makes of one stream; an error name shows a match whatever the path.
struct RowCase {
  std::string position, length, mask, stream;
  bool matches;
};

void ExpectMatches(std::initializer_list<RowCase> cases) {
  for (const RowCase& c : cases) {
    TestPlant plant;
    plant.AddStatusRow(kProto, {"Fault", "0 / ERROR", c.position, c.length, c.mask, "X"});
    ParseStatusData(plant.tables, c.stream, 0, kProto);
    EXPECT_EQ(!plant.tables.ChanError[0].empty(), c.matches)
        << "position " << c.position << " length " << c.length << " mask " << c.mask << " on '" << c.stream << "'";
  }
}

TEST(StatusTest, ATextRowMatchesExactlyAndDemandsOneCharacterMoreThanItsField) {
  ExpectMatches({{"1", "2", "OL", "OL\r", true},
                 {"1", "2", "OL", "OL", false},
                 {"1", "2", "ol", "OL\r", false},
                 {"0", "2", "OL", "OL\r", false},
                 {"0", "2", "", "OL\r", true}});
}

TEST(StatusTest, AByteRowComparesItsBitsInPlaceAndLeavesParityOut) {
  ExpectMatches({{"1", "0", "65", "A\r", true},
                 {"1", "1", "65", "\xC1\r", true},
                 {"1", "1b8", "193", "\xC1\r", true},
                 {"4b3", "1b2", "8", "   \x28\r", true},  // bits 3 and 4 of character 4
                 {"4b3", "1b2", "8", "   \x38\r", false},
                 {"4b3", "1b2", "1", "   \x28\r", false},  // not shifted down
                 {"1b6", "1b4", "192", "\xFF\r", true},    // bits above 7 do not exist
                 {"1b3", "1b0", "0", "\xFF\r", true},      // no bits: always zero
                 {"1b1", "1", "2", "\x03\r", true},        // bits 1 to 7
                 {"1B3", "1b1", "8", "\x08\r", false},     // only a small b makes a partial field
                 {"2", "1", "0", "A", true},               // a short stream reads as a zero byte
                 {"1", "1", "65", "A", false},
                 {"1", "1", "none", std::string("\0\r", 2), true},
                 {"1", "1", "65.5", "A\r", false},
                 {"-3", "1", "65", "A\r", false},
                 {"999999999999", "1", "65", "A\r", false}});
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
  const std::array<std::string, 4> cases[] = {
      {"Stable", "1 / Motion", "bits=0", "bits=0"},
      {"motion", "1 / MOTION", "bits=0", "bits=0"},
      {"Net Mode", "2 / MODE", "bits=4 NET", "bits=4 NET"},
      {"LB", "3 / UNITS", "bits=8 LB", "bits=8 LB"},
      {"Troy Ounces", "3 / UNITS", "bits=0 TROY OUNCES", "bits=0 TROY OUNCES"},
      {"Custom Units1", "3 / UNITS", "bits=0", "bits=0"},
      {"Pieces", "3 / UNITS", "bits=0", "bits=0"},
      {"Out Of Range", "0 / ERROR", "bits=1 OUT OF RANGE", "bits=1 OUT OF RANGE"},
      {"Out of Range", "0 / ERROR", "bits=0 OUT OF RANGE", "bits=0 OUT OF RANGE"},
      {"Decimal Place X.XXXXX", "(WEIGHT)", "bits=0 decimals=-5/-5", "bits=0 match=Decimal Place X.XXXXX,(WEIGHT)"},
      {"Polarity Sign Negative -", "(WEIGHT)", "bits=0 -", "bits=0 match=Polarity Sign Negative -,(WEIGHT)"},
      {"Print Request", "4 / STATUS1", "bits=0 status1=PRINT REQUEST", "bits=0 match=Print Request,4 / STATUS1"},
      {"User9", "STATUS9", "bits=0 status9=USER9", "bits=0 match=User9,STATUS9"},
      {"=> Gross", "2 / MODE", "bits=0", "bits=0 match==> GROSS,2 / MODE"},
  };
  for (const auto& [name, field, byteEffect, textEffect] : cases) {
    EXPECT_EQ(EffectOf(name, field, false), byteEffect) << name;
    EXPECT_EQ(EffectOf(name, field, true), textEffect) << name;
  }
}

TEST(StatusTest, TheWalkStopsBehindTheRowAtTheStatusCountAndTheFirstUnitsRowWins) {
  TestPlant plant;
  plant.AddStatusRow(kProto, {"Net Mode", "2 / MODE", "1", "1", "65", "X"});
  for (const char* unit : {"Pieces", "KG", "LB"}) plant.AddStatusRow(kProto, {unit, "3 / UNITS", "1", "1", "65", "X"});
  plant.AddStatusRow(kProto, {"Motion", "1 / MOTION", "1", "1", "65", "X"});
  for (const auto& [count, bits] : {std::pair{-1, 0}, {0, 4}, {3, 4}, {4, 6}, {100, 6}}) {
    plant.tables.ProtoStatusCount[kProto] = count;
    plant.tables.ChanStatusBits[0] = 16;
    ParseStatusData(plant.tables, "A\r", 0, kProto);
    EXPECT_EQ(plant.tables.ChanStatusBits[0], bits) << count;
  }
  EXPECT_EQ(plant.tables.ChanUnits[0], "KG");
}

TEST(StatusTest, ARowFollowsEachChangeOfItsCells) {
  TestPlant plant;
  StatusTable& table = plant.tables.ProtoStatusTable[kProto];
  plant.AddStatusRow(kProto, {"Motion", "1 / MOTION", "1", "1", "65", "X"});
  for (const auto& [column, cell, bits] :
       {std::tuple{4, "65", 2}, {4, "66", 0}, {2, "2", 2}, {3, "2", 0}, {5, "", 0}}) {
    table.SetCell(0, column, cell);
    ParseStatusData(plant.tables, "AB\r", 0, kProto);
    EXPECT_EQ(plant.tables.ChanStatusBits[0], bits) << column << " " << cell;
  }
}

}  // namespace
