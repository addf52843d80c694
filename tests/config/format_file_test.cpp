#include <algorithm>

#include "tests/config/config_plant.h"

namespace {

constexpr int kCustom1 = 10;
constexpr const char* kFile = "Tarvex-Std-CustFmt1.Cfg";
const std::string kPath = "/plant/Tarvex-Std-CustFmt1.Cfg";

/// Lines 1 to 16 of a format file.
const std::string kHead =
    "7,2,13\r\n5,6,#TRUE#\r\n11,4,#TRUE#\r\n8,3,#TRUE#\r\n1,9,#TRUE#\r\n35,1310,0\r\n"
    "\"W~~\",\"Write\",\"1\",#TRUE#\r\n\"b\",\"B\",\"2\",#FALSE#\r\n\"c\",\"C\",\"3\",#TRUE#\r\n"
    "\"d\",\"D\",\"4\",#TRUE#\r\n\"e\",\"E\",\"5\",#TRUE#\r\n\"f\",\"F\",\"6\",#TRUE#\r\n\"g\",\"G\",\"7\",#TRUE#\r\n"
    "\"h\",\"H\",\"8\",#TRUE#\r\n\"i\",\"I\",\"9\",#TRUE#\r\n\"j\",\"J\",\"10\",#FALSE#\r\n";
const std::string kMotion = "\"Motion\",\"1 / MOTION\",\"2\",\"1\",\"2\",\"X\"\r\n";
const std::string kUnused = "\"\",\"\",\"\",\"\",\"\",\"\"\r\n";

std::string Repeated(const std::string& line, int count) {
  std::string result;
  while (count-- > 0) result += line;
  return result;
}

TEST(FormatFileTest, TheStatusCountIsTheNumberOfTheFirstRowWithoutAName) {
  const struct {
    const char* rule;
    std::string lines;
    int count;
    const char* unendedAt = nullptr;  // none of the rows would be walked, and no channel may be opened on them
  } cases[] = {
      {"nothing behind the last command but blank lines", "\r\n \r\n", -1},
      {"no row without a name", Repeated(kMotion, 100), -1, ", line 116: "},
      {"cut behind a whole row", kMotion, -1, ", line 17: "},
      {"a row of nothing but commas", kMotion + ",,,,,\r\n" + kMotion, 1},
      {"a row of nothing but commas that ends the file", kMotion + ",,,,,", 1},
      {"a row of empty texts", kMotion + kMotion + kUnused + kMotion, 2},
      {"a name that was never set, though the rest was", ",\"1 / MOTION\",\"2\",\"1\",\"2\",\"X\"\r\n", 0},
      {"a hundred names and the spare row", Repeated(kMotion, 100) + kUnused, 100},
  };
  for (const auto& c : cases) {
    ConfigPlant plant;
    plant.File(kFile) = kHead + c.lines;
    EXPECT_EQ(plant.Run(CfgAction::ReadFormatFile, kCustom1), "") << c.rule;
    EXPECT_EQ(plant.tables.ProtoStatusCount[kCustom1], c.count) << c.rule;
    const auto& fault = plant.tables.ProtoFault[kCustom1];
    const std::string told = fault ? fault->Description() : "";
    const std::string expected = c.unendedAt == nullptr ? "" : "Input past end of file: " + kPath + c.unendedAt;
    EXPECT_TRUE(expected.empty() ? told.empty() : told.starts_with(expected)) << c.rule << ": " << told;
  }
}

TEST(FormatFileTest, LoadAndSaveKeepEveryFieldAndUnsetCellsApartFromEmptyOnes) {
  const std::string content = kHead + kMotion + "\"Stable\",,\"\",,\"\",\r\n\"\",,,,,\r\n" + Repeated(kUnused, 97);
  ConfigPlant plant;
  plant.File(kFile) = content;
  EXPECT_EQ(plant.Run(CfgAction::ReadFormatFile, kCustom1), "");
  plant.File(kFile).clear();
  EXPECT_EQ(plant.Run(CfgAction::WriteFormatFile, kCustom1), "");
  EXPECT_EQ(plant.File(kFile), content);
}

TEST(FormatFileTest, DecimalRowsThatTheProtocolCannotCarryAreLoggedOnce) {
  const std::string decimal = "\"Decimal Place XXXX.XX\",\"(Weight)\",\"2\",\"1\",\"52\",\"X\"\r\n";
  const std::string off = decimal.substr(0, decimal.size() - 5) + "\"\"\r\n";
  const struct {
    int custom;
    std::string lines;
    const char* line;  // nothing logged if empty
  } cases[] = {
      {23, decimal + kUnused, ""},
      {24, kMotion + decimal + decimal + kUnused, "line 18: "},
      {24, kMotion + off + kUnused + decimal, ""},
      {24, kMotion + kUnused, ""},
  };
  for (const auto& c : cases) {
    ConfigPlant plant;
    plant.File("Tarvex-Std-CustFmt" + std::to_string(c.custom) + ".Cfg") = kHead + c.lines;
    EXPECT_EQ(plant.Run(CfgAction::ReadFormatFile, 9 + c.custom), "");
    EXPECT_FALSE(plant.tables.ProtoFault[9 + c.custom]);
    const std::string log = plant.LogText(LogType::Error);
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), *c.line == '\0' ? 0 : 1) << log;
    EXPECT_NE(log.find(c.line), std::string::npos) << log;
  }
}

TEST(FormatFileTest, AMaxStreamLengthOutsideItsLimitsIsLoggedAndTheDefaultTaken) {
  for (const auto& [text, taken] : {std::pair{"0", 0}, {"4096", 4096}, {"4097", 48}, {"-1", 48}, {"99999999999", 48}}) {
    ConfigPlant plant;
    plant.File(kFile) = kHead;
    plant.File(kFile).replace(kHead.find("1310,0"), 6, std::string("1310,") + text);
    EXPECT_EQ(plant.Run(CfgAction::ReadFormatFile, kCustom1), "") << text;
    EXPECT_FALSE(plant.tables.ProtoFault[kCustom1]) << text;
    EXPECT_EQ(plant.tables.ProtoMaxStream[kCustom1], taken) << text;
    EXPECT_EQ(plant.tables.ProtoGrossPos[kCustom1], 5) << text;
    const std::string log = plant.LogText(LogType::Error);
    EXPECT_EQ(log.find(kPath + ", line 6, field 3 (ProtoMaxStream)") != std::string::npos, taken == 48) << log;
  }
}

TEST(FormatFileTest, ADamagedFileClearsTheFieldsAndMarksTheProtocolUntilAGoodLoad) {
  const struct {
    const char* rule;
    std::string content;
    std::string fault;
  } cases[] = {
      {"cut in the positions", kHead.substr(0, 11),
       "62 Input past end of file: " + kPath + ", line 2, field 3 (ProtoGrossEnable): the file ends before it"},
      {"cut in a status row", kHead + kMotion.substr(0, 22),
       "62 Input past end of file: " + kPath +
           ", line 17, field 3 (ProtoStatusTable column 2): the file ends before it"},
      {"cut in a row of nothing but commas", kHead + kMotion + ",,,,",
       "62 Input past end of file: " + kPath +
           ", line 18, field 5 (ProtoStatusTable column 4): the file ends before it"},
      {"cut behind a comma of the last command", kHead.substr(0, kHead.size() - 9),
       "62 Input past end of file: " + kPath + ", line 16, field 4 (ProtoCmdEnabled): the file ends before it"},
      {"a start character that is none", "7,-2,13",
       "9 Subscript out of range: " + kPath +
           ", line 1, field 2 (ProtoStartChar): found \"-2\", possible are -1 to 255"},
      {"more rows than the table has", kHead + Repeated(kMotion, 102),
       "9 Subscript out of range: " + kPath +
           ", line 118, field 1 (ProtoStatusTable column 0): a status table has at most 101 lines"},
      {"unreadable", "", "75 Cannot use " + kPath},
  };
  for (const auto& c : cases) {
    ConfigPlant plant;
    plant.File(kFile) = kHead + kMotion + kUnused;
    ASSERT_EQ(plant.Run(CfgAction::ReadFormatFile, kCustom1), "");
    plant.File(kFile) = c.content;
    if (c.content.empty()) plant.files.broken[kPath] = ErrorNumber::PathFileAccess;
    EXPECT_EQ(plant.Run(CfgAction::ReadFormatFile, kCustom1), c.fault) << c.rule;
    const Tables& t = plant.tables;
    ASSERT_TRUE(t.ProtoFault[kCustom1]) << c.rule;
    EXPECT_TRUE(c.fault.ends_with(t.ProtoFault[kCustom1]->Description())) << c.rule;
    EXPECT_EQ(t.ProtoGrossEnable[kCustom1], False) << c.rule;

    plant.files.broken.clear();
    plant.File(kFile) = kHead;
    EXPECT_EQ(plant.Run(CfgAction::ReadFormatFile, kCustom1), "") << c.rule;
    EXPECT_FALSE(t.ProtoFault[kCustom1]) << c.rule;
  }
}

}  // namespace
