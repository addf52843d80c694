#include <fstream>

#include "config/setup/check.h"
#include "platform/memory/memory_port_probe.h"
#include "tests/config/config_plant.h"

namespace {

class SetupCheckTest : public testing::Test {
 protected:
  static std::string Lines(const Findings& findings) {
    std::string lines;
    for (const Finding& finding : findings) lines += finding.Line() + "\n";
    return lines;
  }
  void Row(int row, const std::vector<std::string>& cells, int proto = kProto) {
    for (int column = 0; column < 6; ++column) {
      tables.ProtoStatusTable[proto].SetCell(row, column, cells[static_cast<std::size_t>(column)]);
    }
  }

  static constexpr int kProto = 10;
  ConfigPlant plant;
  Tables& tables = plant.tables;
  MemoryPortProbe probe;
  PortsOfMachine ports{
      .addressOf = [](int number) { return "/dev/ttyS" + std::to_string(number % 10); }, .probe = probe, .manager = 12};
};

TEST_F(SetupCheckTest, ShippedFormatsAreFoundGood) {
  for (const auto& [proto, name] : {std::pair{1, "OVShortFmt"}, {2, "OVStdFmt"}}) {
    std::ifstream file(std::string(FORMATS_FOLDER) + "/Tarvex-Std-" + name + ".Cfg", std::ios::binary);
    plant.File(std::string("Tarvex-Std-") + name + ".Cfg") = std::string(std::istreambuf_iterator<char>(file), {});
    ASSERT_EQ(plant.Run(CfgAction::ReadFormatFile, proto), "");
    EXPECT_EQ(Lines(CheckProtocol(tables, proto)), "");
  }
}

TEST_F(SetupCheckTest, WhatIsQuestionableInAFormatIsNamedWithItsLineAndCure) {
  tables.ProtoMaxStream[kProto] = 20;
  const struct {
    std::vector<std::string> row;
    const char* told;
  } rows[] = {
      {{"Motion", "1 / MOTION", "2b3", "1b1", "8", "X"}, ""},
      {{"Motion", "1 / MOTION", "2b3", "1b1", "9", "X"}, "the bits that it looks at can never be \"9\""},
      {{"Motion", "1 / MOTION", "2b9", "1b1", "8", "X"}, "\"2b9\" gives no first bit"},
      {{"Motion", "1 / MOTION", "2", "1", "256", "X"}, "can never be \"256\""},
      {{"Motion", "1 / MOTION", "2", "2", "M", "X"}, "\"M\" can never be found in 2 characters"},
      {{"Motion", "1 / MOTION", "0", "1", "8", "X"}, "it has no position"},
      {{"Motion", "1 / MOTION", "21", "1", "8", "X"}, "it looks at character 21 of a stream of 20"},
      {{"Motion", "9 / MOTION", "2", "1", "8", "X"}, "there is no DDE field \"9 / MOTION\""},
      {{"Stable", "2 / MODE", "2", "1", "8", "X"}, "it means nothing for the DDE field \"2 / MODE\""},
      {{"Motion", "1 / MOTION", "2", "1", "8", "x"}, "\"x\" does not enable it"},
  };
  for (const auto& c : rows) {
    Row(0, c.row);
    const std::string lines = Lines(CheckProtocol(tables, kProto));
    EXPECT_EQ(lines.empty(), *c.told == '\0') << lines;
    EXPECT_NE(lines.find(c.told), std::string::npos) << lines;
    EXPECT_TRUE(lines.empty() || lines.starts_with("Tarvex-Std-CustFmt1.Cfg, line 17 (")) << lines;
  }
  Row(0, {"Decimal Place XXXX.XX", "(WEIGHT)", "2b0", "1b3", "4", "X"}, 33);
  EXPECT_NE(Lines(CheckProtocol(tables, 33)).find("custom formats 24 and up"), std::string::npos);
  Row(0, rows[0].row);
  Row(2, rows[0].row);
  EXPECT_NE(Lines(CheckProtocol(tables, kProto)).find("line 19 (Motion): it stands behind an empty row"),
            std::string::npos);
  for (int row = 0; row < 100; ++row) Row(row, rows[0].row);
  EXPECT_NE(Lines(CheckProtocol(tables, kProto)).find("the table has no empty row"), std::string::npos);
  tables.ProtoStatusTable[kProto].Clear();

  tables.ProtoStartChar[kProto] = 300;
  tables.ProtoGrossEnable[kProto] = tables.ProtoTareEnable[kProto] = tables.ProtoNetEnable[kProto] = True;
  tables.ProtoGrossPos[kProto] = 2;
  tables.ProtoGrossLen[kProto] = 12;
  tables.ProtoTarePos[kProto] = 16;
  tables.ProtoTareLen[kProto] = 5;
  tables.ProtoNetPos[kProto] = 1;
  for (int command : {0, 1, 2}) tables.ProtoCmdEnabled[command][kProto] = True;
  tables.ProtoCmdText[0][0][kProto] = "W~~";
  for (int command : {0, 1}) tables.ProtoCmdText[2][command][kProto] = "7";
  const std::string lines = Lines(CheckProtocol(tables, kProto));
  for (const char* told :
       {"ProtoStartChar: found 300", "ProtoTarePos: the field ends at character 20 of a stream of 20",
        "ProtoNetPos: the field is enabled with a length of 0", "line 7: the device text ends in \"~\"",
        "line 8: the code 7 is also that of line 7", "line 9: \"\" is no code"}) {
    EXPECT_NE(lines.find(told), std::string::npos) << told << " in\n" << lines;
  }
  tables.ProtoTareEnable[kProto] = False;
  const auto lengthTold = [&](int length) {
    tables.ProtoMaxStream[kProto] = length;
    for (const Finding& finding : CheckProtocol(tables, kProto)) {
      if (finding.field == "ProtoMaxStream") return finding.problem;
    }
    return std::string();
  };
  EXPECT_NE(lengthTold(20).find("do not hold two frames"), std::string::npos);
  EXPECT_NE(lengthTold(20).find("at least 14"), std::string::npos);
  EXPECT_NE(lengthTold(48).find("the weight lags"), std::string::npos);
  EXPECT_NE(lengthTold(31).find("no two frames"), std::string::npos);
  for (const int good : {28, 36, 60}) EXPECT_EQ(lengthTold(good), "");
  Row(0, {"Invalidate", "0 / ERROR", "17b5", "0b1", "32", "X"});  // a frame has 16 characters
  EXPECT_NE(lengthTold(30).find("a frame has 16,"), std::string::npos);
  EXPECT_NE(lengthTold(36).find("the weight lags; a frame has 16,"), std::string::npos);
  EXPECT_EQ(lengthTold(32), "");
  tables.ChanEnabled[7] = tables.ChanPollForData[7] = True;
  tables.ChanProtocol[7] = kProto;
  EXPECT_EQ(lengthTold(36), "") << "a device that is asked for its data pauses";
}

TEST_F(SetupCheckTest, WhatIsQuestionableOnAChannelIsNamedWithItsCure) {
  tables.ChanPortSetup[4] = 33;
  tables.ChanPrimaryUnits[4] = 13;
  EXPECT_EQ(Lines(CheckChannel(tables, 4, probe)),
            "Tarvex-SCALE5.Cfg, ChanPrimaryUnits: found 13, so the Units lamp stays dark; possible are 0 to 12\n");
  tables.ChanPrimaryUnits[4] = 0;
  tables.ChanEnabled[4] = True;
  tables.ChanPortSetup[4] = 0;
  probe.refused = {"1200,N,7,1"};
  EXPECT_NE(Lines(CheckChannel(tables, 4, probe)).find("does not take 1200,N,7,1"), std::string::npos);
}

TEST_F(SetupCheckTest, WhatStandsInTheWayOfAPortIsNamedWithItsCure) {
  tables.MaxChannel = 31;
  tables.ChanEnabled[4] = True;
  using State = PortStanding::State;
  const struct {
    PortStanding standing;
    const char* told;
  } cases[] = {
      {{State::Present}, ""},
      {{State::NotPresent}, "COM1, /dev/ttyS1: not present; plug it in"},
      {{State::NotADevice}, "COM1, /dev/ttyS1: not a serial device; give the port"},
      {{.state = State::NoPermission, .group = "dialout", .groupMayUse = true},
       "no permission (group dialout); have the user taken into that group"},
      {{.state = State::NoPermission, .group = "dialout"}, "let the device's group read and write it"},
      {{.state = State::InUse, .program = "minicom", .pid = 4711}, "in use by minicom (4711); end that program"},
      {{.state = State::InUse, .program = "tarvexd", .pid = 12}, ""},  // the manager of these settings
      {{.state = State::InUse, .program = "tarvexd", .pid = 13}, "in use by tarvexd (13)"},
  };
  for (const auto& c : cases) {
    probe.standing["/dev/ttyS1"] = c.standing;
    const std::string lines = Lines(CheckPorts(tables, ports));
    EXPECT_EQ(lines.empty(), *c.told == '\0') << lines;
    EXPECT_NE(lines.find(c.told), std::string::npos) << lines;
  }
  probe.standing = {{"/dev/ttyS2", {.state = State::Present, .device = "/dev/ttyS1"}}};
  for (int ch : {6, 7}) tables.ChanEnabled[ch] = True;
  tables.ChanPort[6] = 10;  // another number, the same address
  tables.ChanPort[7] = 1;   // another address, the same device
  EXPECT_EQ(Lines(CheckPorts(tables, ports)),
            "Tarvex-SCALE5.Cfg, ChanPort: COM1, /dev/ttyS1, is also the port of channel 7; give each channel a port "
            "of its own, or disable one\n"
            "Tarvex-SCALE7.Cfg, ChanPort: COM11, /dev/ttyS1, is also the port of channel 5; give each channel a port "
            "of its own, or disable one\n"
            "Tarvex-SCALE5.Cfg, ChanPort: COM1, /dev/ttyS1, is also the port of channel 8; give each channel a port "
            "of its own, or disable one\n"
            "Tarvex-SCALE8.Cfg, ChanPort: COM2, /dev/ttyS2, is also the port of channel 5; give each channel a port "
            "of its own, or disable one\n");
}

}  // namespace
