#include "core/initialisation.h"

#include <gtest/gtest.h>

#include "core/scan_engine.h"
#include "core/startup.h"
#include "tests/support/test_plant.h"

namespace {

/// Files as the test tells them: `onRead` fills the tables of a channel or raises, `journal` holds the actions.
class ScriptedConfiguration : public Configuration {
 public:
  std::string journal;
  std::function<void(int action, int number)> onRead;
  void ReadDatabaseRights() override {}
  void CfgProc(int action, int number) override {
    journal += std::to_string(action) + ":" + std::to_string(number) + " ";
    if (onRead) onRead(action, number);
  }
};

struct ColdPlant : TestPlant {
  ScriptedConfiguration configuration;
  Engine cold = EngineWith({.configuration = &configuration});
  ColdPlant() {
    RequestFirstInitialisation(tables);
    tables.MaxChannel = 2;
    tables.ScanTick = 41;
    configuration.onRead = [this](int action, int number) {
      if (action != CfgAction::ReadChannelFile) return;
      tables.ChanEnabled[number] = True;
      tables.ChanProtocol[number] = 2;
      tables.ChanPort[number] = number + 4;
      tables.ChanPortSetup[number] = 33;
    };
  }
};

std::string ChannelActions(const std::string& journal) { return journal.substr(journal.find("4:")); }

/// Outcome of the first tick for channel 1 when opening its port fails.
void ExpectFailedChannel(const Tables& t) {
  EXPECT_EQ(t.ChanConnected[1], False);
  EXPECT_EQ(t.ChanEnabled[1], False);
  EXPECT_EQ(t.ChanStatusText[1], "Initialization Error...");
  EXPECT_EQ(t.ChanIndicator[Item::Enabled][1], False);
}

TEST(InitialisationTest, APortFaultDisablesItsChannelAndTheNextTickGoesOnBehindIt) {
  const std::tuple<int, std::string, std::string, int, std::string> cases[] = {
      {8002, "Invalid COM: Port Selected.", "The COM: port you have selected is invalid.", 1, "9600,n,8,1"},
      {8005, "COM: Port Already In Use.", "The COM: port you have selected is already in use...", 6, "9600,N,8,1"},
  };
  for (const auto& [number, log, box, commPort, settings] : cases) {
    ColdPlant plant;
    plant.ports.port[1].openError = number;
    EXPECT_EQ(Timer1Tick(plant.cold)->Number(), number);
    ExpectFailedChannel(plant.tables);
    EXPECT_EQ(plant.LogText(LogType::Error), "2026-01-02 03:04:05 @ Channel: 2  " + log +
                                                 "\r\n2026-01-02 03:04:05 @ Channel: 2  COM6 cannot be opened\r\n");
    ASSERT_EQ(plant.notice.boxes.size(), 1U);
    EXPECT_EQ(plant.notice.boxes[0].caption, "Tarvex Device Initialization Error");
    EXPECT_EQ(plant.notice.boxes[0].text, box + "\r\nRestoring default Tarvex Std. settings now...");
    EXPECT_EQ(plant.ports.port[1].settings, settings);
    EXPECT_EQ(plant.ports.port[1].commPort, commPort);
    EXPECT_EQ(plant.configuration.journal.find("6:"), std::string::npos) << "the user's file is left alone";
    EXPECT_EQ(plant.tables.ChannelsInitialised, False);

    plant.configuration.journal = "4:";
    EXPECT_FALSE(Timer1Tick(plant.cold));
    EXPECT_EQ(ChannelActions(plant.configuration.journal), "4:4:2 ") << "nothing is read or opened twice";
    EXPECT_EQ(plant.tables.ChanConnected[0], True);
    EXPECT_EQ(plant.tables.ChanConnected[2], True);
    EXPECT_EQ(plant.ports.port[0].opened, 1);
  }
}

TEST(InitialisationTest, AChannelWhoseDeviceWasNotThereIsOpenedWhenItAppearsUnlessItsFileDisablesItMeanwhile) {
  for (const bool disabledMeanwhile : {false, true}) {
    ColdPlant plant;
    plant.ports.port[1].openError = ErrorNumber::SerialPortInvalid;
    for (int tick = 0; tick < 2; ++tick) Timer1Tick(plant.cold);
    ExpectFailedChannel(plant.tables);
    const int tried = plant.ports.port[1].opened;
    for (int tick = 0; tick < 10; ++tick) {
      if (tick % 2 == 0) ++plant.system.second;
      Timer1Tick(plant.cold);
    }
    EXPECT_EQ(plant.ports.port[1].opened, tried + 5) << "once a second";
    EXPECT_EQ(plant.notice.boxes.size(), 1U) << "told once";

    plant.ports.port[1].openError = 0;
    const auto fromFile = plant.configuration.onRead;
    plant.configuration.onRead = [&](int action, int number) {
      fromFile(action, number);
      plant.tables.ChanEnabled[number] = AsBoolean(!disabledMeanwhile);
    };
    ++plant.system.second;
    Timer1Tick(plant.cold);
    EXPECT_EQ(plant.tables.ChanConnected[1] == True, !disabledMeanwhile);
    EXPECT_EQ(plant.ports.port[1].open, !disabledMeanwhile);
    EXPECT_EQ(plant.ports.port[1].commPort, 6) << "the channel's own, not that of the defaults";
    EXPECT_EQ(plant.tables.ChanStatusText[1], disabledMeanwhile ? "Device Disabled..." : "Ready...");
  }
}

TEST(InitialisationTest, AfterAStopNoRowShowsItsOldWeightWhileAnotherChannelHoldsUpTheStart) {
  ColdPlant plant;
  Timer1Tick(plant.cold);
  plant.tables.ChanGross[2] = "1250";
  plant.tables.ChanIndicator[Item::Motion][2] = True;
  LaunchMainScreen(plant.cold);
  plant.ports.port[0].openError = ErrorNumber::SerialPortInUse;
  Timer1Tick(plant.cold);
  EXPECT_EQ(plant.tables.ChanGross[2], "");
  EXPECT_EQ(plant.tables.ChanStatusText[2], "Initializing...");
  EXPECT_EQ(plant.tables.ChanIndicator[Item::Motion][2], False);
}

TEST(InitialisationTest, WhatIsWrongWithFormatsIsToldOnceAllChannelsAreOpenAndHoldsUpNone) {
  ColdPlant plant;
  plant.tables.SpeechEnabled = True;
  const auto readChannel = plant.configuration.onRead;
  plant.configuration.onRead = [&](int action, int number) {
    readChannel(action, number);
    if (action == CfgAction::ReadChannelFile && number != 1) plant.tables.ChanProtocol[number] = 10;
    if (action != CfgAction::ReadFormatFile || number < 10 || number > 12) return;
    plant.tables.ProtoFault[number].emplace(13, "FILE" + std::to_string(number));
    if (number != 11) throw RunTimeError(*plant.tables.ProtoFault[number]);
  };
  EXPECT_FALSE(Timer1Tick(plant.cold));
  EXPECT_EQ(plant.tables.ChannelsInitialised, True);
  EXPECT_EQ(plant.tables.ChanConnected[1], True);
  EXPECT_EQ(plant.tables.ChanStatusText[2], "Initialization Error...");
  EXPECT_EQ(plant.tables.ChanIndicator[Item::Error][2], True);
  Timer1Tick(plant.cold);
  const std::string at = "2026-01-02 03:04:05 @ ";
  const std::string protocol = "Protocol 10 (OVCustom Format 1) of channels 1, 3:";
  EXPECT_EQ(plant.LogText(LogType::Error), at + protocol + "  Critical Error: 13  FILE10\r\n" + at +
                                               "2 format files that no enabled channel uses cannot be used, the first: "
                                               "Protocol 11 (OVCustom Format 2): FILE11\r\n");
  ASSERT_EQ(plant.notice.boxes.size(), 1U);
  EXPECT_EQ(plant.notice.boxes[0].text, protocol +
                                            "\r\nCritical Error: 13  FILE10\r\nPlease Contact Orvane "
                                            "Technical Services...");
  ASSERT_EQ(plant.notice.spoken.size(), 1U);
  EXPECT_NE(plant.notice.spoken[0].find("possibly on Channel 1,"), std::string::npos);
}

TEST(InitialisationTest, ALogThatFailsWhileAFormatIsReadEndsTheTickAndTheNextOneGoesOnBehindTheFormat) {
  ColdPlant plant;
  const auto readChannel = plant.configuration.onRead;
  plant.configuration.onRead = [&](int action, int number) {
    if (action == CfgAction::ReadFormatFile && number == 5) throw RunTimeError(ErrorNumber::DiskFull, "log");
    readChannel(action, number);
  };
  EXPECT_EQ(Timer1Tick(plant.cold)->Number(), ErrorNumber::DiskFull);
  plant.configuration.journal.clear();
  EXPECT_FALSE(Timer1Tick(plant.cold));
  EXPECT_TRUE(plant.configuration.journal.starts_with("10:6 ")) << plant.configuration.journal;
}

TEST(InitialisationTest, ADisabledRowSaysWhetherItsSettingsWereLost) {
  ColdPlant plant;
  plant.configuration.onRead = [&](int, int) { plant.tables.ChanSettingsLost[1] = True; };
  Timer1Tick(plant.cold);
  EXPECT_EQ(plant.tables.ChanStatusText[0], "Device Disabled...");
  EXPECT_EQ(plant.tables.ChanStatusText[1], "Settings Lost...");
}

TEST(InitialisationTest, AChannelIsOpenedAgainFromTheTablesWhenItsSetupAsksForIt) {
  ColdPlant plant;
  Timer1Tick(plant.cold);
  Tables& t = plant.tables;
  t.ChanConnected[1] = False;
  plant.configuration.journal = "4:";
  Timer1Tick(plant.cold);
  EXPECT_EQ(t.ChanConnected[1], False) << "nothing else opens it";
  t.ReinitChannel = 1;
  t.ChanPort[1] = 9;
  Timer1Tick(plant.cold);
  EXPECT_EQ(t.ChanConnected[1], True);
  EXPECT_EQ(plant.ports.port[1].commPort, 10);
  EXPECT_EQ(t.ReinitChannel, kNoChannel);
  EXPECT_EQ(ChannelActions(plant.configuration.journal), "4:") << "the file is not read";

  t.ChanConnected[1] = False;
  t.ReinitChannel = 1;
  t.ProtoFault[2].emplace(ErrorNumber::InputPastEnd, "damaged");
  Timer1Tick(plant.cold);
  EXPECT_EQ(plant.ports.port[1].opened, 2) << "under a damaged format every weight would be wrong";
  ExpectFailedChannel(t);
}

}  // namespace
