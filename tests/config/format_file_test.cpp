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

TEST(FormatFileTest, ANumberThatNoRuleCanUseIsLoggedKeptAndSaved) {
  const struct {
    const char* line;
    const char* logged;  ///< field of the error log's line, if there is one
  } cases[] = {
      {"7,2,13", ""},
      {"7,-1,13", ""},
      {"7,-2,13", "line 1, field 2 (ProtoStartChar)"},
      {"7,2,1310", "line 1, field 3 (ProtoTerminator)"},
      {"35,1310,0", ""},
      {"35,1310,4096", ""},
      {"35,1310,4097", "line 6, field 3 (ProtoMaxStream)"},
      {"35,1310,-1", "line 6, field 3 (ProtoMaxStream)"},
  };
  for (const auto& c : cases) {
    ConfigPlant plant;
    const std::string line = c.line;
    const std::string replaced = line.starts_with("7") ? "7,2,13" : "35,1310,0";
    std::string content = kHead + Repeated(kUnused, 100);
    content.replace(content.find(replaced), replaced.size(), line);
    plant.File(kFile) = content;
    EXPECT_EQ(plant.Run(CfgAction::ReadFormatFile, kCustom1), "") << line;
    EXPECT_FALSE(plant.tables.ProtoFault[kCustom1]) << line;
    EXPECT_EQ(plant.LogText(LogType::Error).find(kPath + ", " + c.logged) != std::string::npos, *c.logged != '\0');
    EXPECT_EQ(plant.Run(CfgAction::WriteFormatFile, kCustom1), "");
    EXPECT_EQ(plant.File(kFile), content);
  }
}

TEST(FormatFileTest, ADamagedFileChangesNothingAndMarksTheProtocolUntilAGoodLoad) {
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
      {"a number that is too large", "7,99999999999,13",
       "6 Overflow: " + kPath + ", line 1, field 2 (ProtoStartChar): found \"99999999999\""},
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
    EXPECT_EQ(t.ProtoGrossEnable[kCustom1], True) << c.rule;
    EXPECT_EQ(t.ProtoStatusCount[kCustom1], 1) << c.rule;

    plant.files.broken.clear();
    plant.File(kFile) = kHead;
    EXPECT_EQ(plant.Run(CfgAction::ReadFormatFile, kCustom1), "") << c.rule;
    EXPECT_FALSE(t.ProtoFault[kCustom1]) << c.rule;
  }
}

TEST(FormatFileTest, AChannelThatIsDecodingKeepsItsRecordWhenTheFileIsGoneOrDamaged) {
  for (const std::string& content : {std::string(), kHead + kMotion, kHead.substr(0, 30)}) {
    ConfigPlant plant;
    plant.File(kFile) = kHead + kMotion + kUnused;
    ASSERT_EQ(plant.Run(CfgAction::ReadFormatFile, kCustom1), "");
    plant.tables.ChanProtocol[3] = kCustom1;
    plant.tables.ChanConnected[3] = True;
    plant.File(kFile) = content;
    plant.Run(CfgAction::ReadFormatFile, kCustom1);
    EXPECT_EQ(plant.tables.ProtoGrossPos[kCustom1], 5) << content;
    EXPECT_EQ(plant.tables.ProtoStatusCount[kCustom1], 1) << content;
  }
}

}  // namespace
