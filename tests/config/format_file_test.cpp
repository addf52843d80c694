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
  } cases[] = {
      {"nothing behind the last command but blank lines", "\r\n \r\n", -1},
      {"no row without a name", Repeated(kMotion, 100), -1},
      {"a row of nothing but commas", kMotion + ",,,,,\r\n" + kMotion, 1},
      {"a row of empty texts", kMotion + kMotion + kUnused + kMotion, 2},
      {"a name that was never set, though the rest was", ",\"1 / MOTION\",\"2\",\"1\",\"2\",\"X\"\r\n", 0},
      {"a hundred names and the spare row", Repeated(kMotion, 100) + kUnused, 100},
  };
  for (const auto& c : cases) {
    ConfigPlant plant;
    plant.File(kFile) = kHead + c.lines;
    EXPECT_EQ(plant.Run(CfgAction::ReadFormatFile, kCustom1), "") << c.rule;
    EXPECT_EQ(plant.tables.ProtoStatusCount[kCustom1], c.count) << c.rule;
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
    EXPECT_EQ(t.ProtoDamaged[kCustom1], True) << c.rule;
    EXPECT_EQ(t.ProtoGrossEnable[kCustom1], False) << c.rule;

    plant.files.broken.clear();
    plant.File(kFile) = kHead;
    EXPECT_EQ(plant.Run(CfgAction::ReadFormatFile, kCustom1), "") << c.rule;
    EXPECT_EQ(t.ProtoDamaged[kCustom1], False) << c.rule;
  }
}

}  // namespace
