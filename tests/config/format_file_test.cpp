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

TEST(FormatFileTest, EveryFieldHasItsPlaceInTheTables) {
  ConfigPlant plant;
  plant.File(kFile) = kHead + kUnused + kMotion;
  ASSERT_EQ(plant.Run(CfgAction::ReadFormatFile, kCustom1), "");
  const Tables& t = plant.tables;
  EXPECT_EQ(
      (std::vector<int>{t.ProtoReserved[kCustom1], t.ProtoStartChar[kCustom1], t.ProtoTerminator[kCustom1],
                        t.ProtoGrossPos[kCustom1], t.ProtoGrossLen[kCustom1], t.ProtoGrossEnable[kCustom1],
                        t.ProtoTarePos[kCustom1], t.ProtoTareLen[kCustom1], t.ProtoTareEnable[kCustom1],
                        t.ProtoNetPos[kCustom1], t.ProtoNetLen[kCustom1], t.ProtoNetEnable[kCustom1],
                        t.ProtoIdPos[kCustom1], t.ProtoIdLen[kCustom1], t.ProtoIdEnable[kCustom1],
                        t.ProtoCmdStartChar[kCustom1], t.ProtoCmdTerminator[kCustom1], t.ProtoMaxStream[kCustom1]}),
      (std::vector<int>{7, 2, 13, 5, 6, -1, 11, 4, -1, 8, 3, -1, 1, 9, -1, 35, 1310, 0}));
  EXPECT_EQ(t.ProtoCmdText[0][0][kCustom1] + t.ProtoCmdText[1][0][kCustom1] + t.ProtoCmdText[2][9][kCustom1],
            "W~~Write10");
  EXPECT_EQ(t.ProtoCmdEnabled[0][kCustom1], True);
  EXPECT_EQ(t.ProtoCmdEnabled[9][kCustom1], False);
  EXPECT_EQ(t.ProtoStatusTable[kCustom1].Text(1, 1), "1 / MOTION") << "rows behind a gap stay";
  EXPECT_EQ(t.ProtoFixedFormat[kCustom1], False);
  plant.Run(CfgAction::ReadFormatFile, 9);
  EXPECT_EQ(t.ProtoFixedFormat[9], True);
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
    plant.tables.ProtoStatusTable[kCustom1].SetCell(50, 0, "left over");
    plant.File(kFile) = kHead + c.lines;
    EXPECT_EQ(plant.Run(CfgAction::ReadFormatFile, kCustom1), "") << c.rule;
    EXPECT_EQ(plant.tables.ProtoStatusCount[kCustom1], c.count) << c.rule;
    EXPECT_NE(plant.tables.ProtoStatusTable[kCustom1].Text(50, 0), "left over") << c.rule;
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

TEST(FormatFileTest, AMissingOrEmptyFileIsLoggedAndClearsTheFieldsAlone) {
  ConfigPlant plant;
  plant.File(kFile) = kHead + kMotion + kUnused;
  plant.Run(CfgAction::ReadFormatFile, kCustom1);
  plant.files.content.erase(kPath);
  for (int time = 1; time <= 2; ++time) {
    EXPECT_EQ(plant.Run(CfgAction::ReadFormatFile, kCustom1), "");
    EXPECT_EQ(plant.files.content.count(kPath), 1U) << "an empty file is left behind";
    EXPECT_EQ(plant.LogText(LogType::Error),
              Repeated("2026-01-02 03:04:05 @ " + kPath + " STD Format File Not Found.\r\n", time));
  }
  const Tables& t = plant.tables;
  EXPECT_EQ(t.ProtoGrossPos[kCustom1] + t.ProtoTareLen[kCustom1] + t.ProtoIdLen[kCustom1] + t.ProtoNetEnable[kCustom1],
            0);
  EXPECT_EQ(t.ProtoMaxStream[kCustom1], 48);
  EXPECT_EQ(t.ProtoTerminator[kCustom1], 13);
  EXPECT_EQ(t.ProtoStatusCount[kCustom1], 1);
  EXPECT_EQ(t.ProtoCmdText[1][0][kCustom1], "Write");
  EXPECT_EQ(t.ProtoDamaged[kCustom1], False) << "a missing file is no damage";
}

TEST(FormatFileTest, ADamagedFileClearsTheFieldsAndMarksTheProtocolUntilAGoodLoad) {
  const struct {
    const char* rule;
    std::string content;
    std::string fault;
  } cases[] = {
      {"cut in the positions", kHead.substr(0, 11),
       "62 Input past end of file: " + kPath + ", line 2, field 3 (ProtoGrossEnable): the file ends before it"},
      {"cut before the commands", kHead.substr(0, kHead.find("\"W~~")),
       "62 Input past end of file: " + kPath + ", line 7, field 1 (ProtoCmdText row 0): the file ends before it"},
      {"cut in a status row", kHead + kMotion.substr(0, 22),
       "62 Input past end of file: " + kPath +
           ", line 17, field 3 (ProtoStatusTable column 2): the file ends before it"},
      {"binary",
       std::string("\x7F"
                   "ELF\0",
                   5),
       "13 Type mismatch: " + kPath + ", line 1, field 1 (ProtoReserved): found \"\\x7FELF\\x00\""},
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
    EXPECT_EQ(t.ProtoTerminator[kCustom1], 13) << c.rule;
    EXPECT_EQ(t.ProtoStatusTable[kCustom1].Text(0, 0), "Motion") << c.rule;
    EXPECT_EQ(t.ProtoStatusCount[kCustom1], 1) << c.rule;

    plant.files.broken.clear();
    plant.File(kFile) = kHead;
    EXPECT_EQ(plant.Run(CfgAction::ReadFormatFile, kCustom1), "") << c.rule;
    EXPECT_EQ(t.ProtoDamaged[kCustom1], False) << c.rule;
  }
}

TEST(FormatFileTest, AProtocolWithoutAFileHasNothingToLoadOrSave) {
  ConfigPlant plant;
  EXPECT_EQ(plant.Run(CfgAction::ReadFormatFile, 42), "53 Protocol 42 has no format file");
  EXPECT_EQ(plant.Run(CfgAction::WriteFormatFile, 42), "53 Protocol 42 has no format file");
  EXPECT_EQ(plant.Run(CfgAction::ReadFormatFile, 43).substr(0, 2), "9 ");
  EXPECT_TRUE(plant.files.content.empty());
}

}  // namespace
