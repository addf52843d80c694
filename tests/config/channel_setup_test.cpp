#include "tests/config/setup_plant.h"

namespace {

using enum Control;

class ChannelSetupTest : public testing::Test {
 protected:
  ChannelSetupTest() {
    plant.Connect(4, 10);
    plant.Run(CfgAction::WriteFormatFile, 10);
    plant.tables.ChanDeviceDesc[4] = "HOPPER";
    plant.Run(CfgAction::WriteChannelFile, 4);
  }
  const std::string& ChannelFile() { return plant.File("Tarvex-SCALE5.Cfg"); }
  const std::string& FormatFile() { return plant.File("Tarvex-Std-CustFmt1.Cfg"); }

  SetupPlant plant;
  SetupModel& setup = plant.setup;
  Tables& tables = plant.tables;
};

TEST_F(ChannelSetupTest, TheChannelIsLetGoOfAndOpenedAgainByTheNextTick) {
  tables.ChanGross[4] = "  12.50";
  tables.ReinitChannel = 2;
  plant.channelSetup.Open(4);
  EXPECT_TRUE(plant.form.shown);
  EXPECT_EQ(setup.Fields().At(lDEVICE, 1).text, "SCALE 5");
  EXPECT_NE(tables.ChanStatusBits[4] & StatusBit::Offline, 0);
  EXPECT_FALSE(plant.ports.port[4].open);
  tables.ChanDeviceMissing[4] = tables.ChanReopenPending[4] = True;
  for (int tick = 0; tick < 3; ++tick) plant.Tick();
  EXPECT_FALSE(plant.ports.port[4].open) << "nothing opens a channel that is edited";
  EXPECT_EQ(tables.ChanGross[4], "");
  EXPECT_EQ(tables.ReinitChannel, kNoChannel);
  EXPECT_EQ(tables.ChanReopenPending[2], False) << "the one that waited was served";

  plant.channelSetup.Open(7);
  EXPECT_EQ(setup.Channel(), 4) << "one at a time";
  setup.SetText({tDeviceDesc}, "SILO");
  setup.SetText({t, 1}, "5");
  plant.channelSetup.cmdOk();
  EXPECT_FALSE(plant.form.shown);
  EXPECT_EQ(tables.ReinitChannel, 4);
  EXPECT_NE(ChannelFile().find("\"SILO\""), std::string::npos);
  EXPECT_EQ(tables.ProtoGrossLen[10], 5);
  plant.Tick();
  EXPECT_EQ(tables.ChanConnected[4], True);
  EXPECT_EQ(tables.ChanDirty[Item::Description][4], True) << "the row shows the new name";
  EXPECT_EQ(plant.LogText(LogType::Activity),
            "2026-01-02 03:04:05 @ Tarvex Manager Setup Activated\r\n"
            "2026-01-02 03:04:05 @ Tarvex Std. Manager Setup Deactivated\r\n");
}

TEST_F(ChannelSetupTest, CancelBringsBackWhatTheFilesHold) {
  const std::string channel = ChannelFile(), format = FormatFile();
  plant.channelSetup.Open(4);
  setup.SetText({tDeviceDesc}, "SILO");
  setup.SetText({t, 1}, "5");
  setup.SetIndex({cb, 3}, 2);
  plant.channelSetup.cmdCancel();
  EXPECT_EQ(tables.ChanProtocol[4], 10);
  EXPECT_EQ(tables.ChanDeviceDesc[4], "HOPPER");
  EXPECT_EQ(ChannelFile(), channel);
  EXPECT_EQ(FormatFile(), format);
  EXPECT_EQ(tables.ReinitChannel, 4);
}

TEST_F(ChannelSetupTest, AFixedFormatIsNotSaved) {
  plant.channelSetup.Open(4);
  setup.SetIndex({cb, 3}, 2);
  const std::string before = plant.File("Tarvex-Std-OVStdFmt.Cfg");
  setup.SetText({t, 10}, "99");
  plant.channelSetup.cmdOk();
  EXPECT_EQ(plant.File("Tarvex-Std-OVStdFmt.Cfg"), before);
  EXPECT_EQ(tables.ChanProtocol[4], 2);
}

TEST_F(ChannelSetupTest, WhatCannotBeSavedLeavesBothFilesAndTheScreenAsTheyWere) {
  const std::string channel = ChannelFile(), format = FormatFile();
  struct Case {
    const char *field, *text, *told;
  };
  for (const Case& c : {Case{"tTimeout", "99999999999", "6  Overflow: tTimeout (Timeout: ( mS ) ( 0=None ))"},
                        Case{"t(10)", "99999999999", "6  Overflow: t(10)"}}) {
    plant.channelSetup.Open(4);
    setup.SetText({tDeviceDesc}, "SILO");
    setup.SetText(*setup.Fields().Find(c.field), c.text);
    plant.channelSetup.cmdOk();
    EXPECT_NE(plant.TakeBoxes().find(c.told), std::string::npos) << c.field;
    EXPECT_TRUE(plant.form.shown) << c.field;
    EXPECT_EQ(setup.Fields().At(tDeviceDesc).text, "SILO");
    EXPECT_EQ(ChannelFile(), channel) << c.field;
    EXPECT_EQ(FormatFile(), format) << c.field;
    EXPECT_EQ(tables.ProtoMaxStream[10], 0);
    EXPECT_FALSE(plant.ports.port[4].open);
    plant.channelSetup.cmdCancel();
    plant.Tick();
  }
}

TEST_F(ChannelSetupTest, OtherChannelsOfTheProtocolGoOnWithTheirRecord) {
  plant.Connect(6, 10);
  tables.ProtoGrossPos[10] = 7;
  tables.ProtoStatusTable[10].SetCell(0, 0, "Motion");
  plant.File("Tarvex-Std-CustFmt1.Cfg").clear();  // nothing to read the record of before from
  tables.ChanTxQueue[4] = "ZERO\r";
  plant.channelSetup.Open(4);
  EXPECT_EQ(tables.ChanTxQueue[4], "") << "it is not for a device that is chosen now";
  setup.SetText({t, 0}, "3");
  setup.SetText({t, 10}, "99999999999");
  plant.channelSetup.cmdOk();
  for (int time = 0; time < 2; ++time) {
    EXPECT_EQ(tables.ProtoGrossPos[10], 7);
    EXPECT_EQ(tables.ProtoStatusTable[10].Text(0, 0), "Motion");
    plant.channelSetup.cmdCancel();
  }
  // A file that another program has changed comes into force with its own decimal places.
  tables.ProtoGrossPos[10] = 2;
  plant.Run(CfgAction::WriteFormatFile, 10);
  tables.ChanStatusDecimals[6] = tables.ChanDecimalsKnown[6] = True;
  plant.channelSetup.Open(4);
  EXPECT_EQ(tables.ChanStatusDecimals[6], False);
}

TEST_F(ChannelSetupTest, ARefusedPortClosesTheScreenWithTheChannelDisabled) {
  plant.channelSetup.Open(4);
  setup.SetValue({ckEnableDevice}, 1);
  plant.ports.port[4].openError = ErrorNumber::SerialPortInUse;
  plant.channelSetup.cmdOk();
  EXPECT_FALSE(plant.form.shown);
  EXPECT_NE(plant.TakeBoxes().find("already in use...\r\nDisabling Device Now..."), std::string::npos);
  plant.ports.port[4].openError = 0;
  plant.Run(CfgAction::ReadChannelFile, 4);
  EXPECT_EQ(tables.ChanEnabled[4], False);
}

TEST_F(ChannelSetupTest, AnotherProgramsChangeIsToldOnceBeforeItIsReplaced) {
  plant.channelSetup.Open(4);
  plant.File("Tarvex-Std-CustFmt1.Cfg") += ",,,,,\r\n";
  plant.channelSetup.cmdOk();
  EXPECT_NE(plant.TakeBoxes().find("/plant/Tarvex-Std-CustFmt1.Cfg"), std::string::npos);
  EXPECT_TRUE(plant.form.shown);
  plant.channelSetup.cmdOk();
  EXPECT_FALSE(plant.form.shown);
}

TEST_F(ChannelSetupTest, ADamagedFileCanBeMendedOnTheScreen) {
  plant.File("Tarvex-Std-CustFmt1.Cfg") = "1,2\r\nx";
  plant.channelSetup.Open(4);
  EXPECT_TRUE(plant.form.shown);
  EXPECT_NE(plant.TakeBoxes().find("Tarvex-Std-CustFmt1.Cfg"), std::string::npos);
  setup.SetIndex({cb, 3}, 10);  // told, not raised
  EXPECT_NE(plant.TakeBoxes(), "");
  plant.channelSetup.cmdOk();
  EXPECT_EQ(plant.Run(CfgAction::ReadFormatFile, 10), "");
  EXPECT_FALSE(tables.ProtoFault[10]);
}

TEST_F(ChannelSetupTest, TheFilesOfOtherChannelsDoNotReachTheScreen) {
  plant.channelSetup.Open(4);
  setup.SetText({tDeviceDesc}, "SILO");
  plant.Run(CfgAction::TablesToScreen, 7);
  EXPECT_EQ(setup.Fields().At(tDeviceDesc).text, "SILO");
}

}  // namespace
