#include "core/initialisation.h"

#include <gtest/gtest.h>

#include "core/scan_engine.h"
#include "tests/support/test_plant.h"

namespace {

/// Files as the test tells them: `onRead` fills the tables of a channel or raises, `journal` holds the actions.
class ScriptedConfiguration : public Configuration {
 public:
  std::string journal;
  std::function<void(int action, int number)> onRead;
  void CfgProc(int action, int number) override {
    journal += std::to_string(action) + ":" + std::to_string(number) + " ";
    if (onRead) onRead(action, number);
  }
};

class RefusingTerminal : public AbsentTerminal {
 public:
  bool answers = false;
  bool OpenArcNet(int) override { return answers; }
};

struct ColdPlant : TestPlant {
  ScriptedConfiguration configuration;
  RefusingTerminal terminal;
  Engine cold = EngineWith({.configuration = &configuration, .terminal = &terminal});
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

TEST(InitialisationTest, TheFirstTickReadsTheFormatsAndOpensEveryEnabledChannel) {
  ColdPlant plant;
  Tables& t = plant.tables;
  t.ChanXonXoff[1] = True;
  t.ChanPrimaryUnits[1] = 6;
  t.ChanGross[1] = "12";
  t.ChanDeviceDesc[1] = "Silo";
  t.ChanConnectUsing[2] = 2;
  t.ChanStatusDecimals[1] = t.ChanDecimalsKnown[1] = True;
  EXPECT_FALSE(Timer1Tick(plant.cold));
  EXPECT_EQ(plant.configuration.journal.substr(0, 10), "10:0 10:1 ");
  EXPECT_EQ(plant.configuration.journal.find("10:39"), std::string::npos);
  EXPECT_EQ(ChannelActions(plant.configuration.journal), "4:0 4:1 4:2 ");
  EXPECT_EQ(plant.LogText(LogType::Activity), "2026-01-02 03:04:05 @ Initializing Devices...\r\n");
  const FakePort& port = plant.ports.port[1];
  EXPECT_EQ(port.commPort, 6);
  EXPECT_EQ(port.settings, "9600,N,8,1");
  EXPECT_EQ(port.handshaking, 1);
  EXPECT_EQ(t.ChanConnected[1], True);
  EXPECT_EQ(t.ChanStatusText[1], "Ready...");
  EXPECT_EQ(t.ChanLastRxTick[1], 42);
  EXPECT_EQ(t.ChanPrimaryUnitsName[1], "TONS");
  EXPECT_EQ(t.ChanGross[1], "");
  EXPECT_EQ(t.ChanPrevStatusBits[1], -32765);
  EXPECT_EQ(t.ChanPrevTare[1], "-999999");
  EXPECT_EQ(t.ChanOpcPending[1], True);
  EXPECT_EQ(t.ChanStatusDecimals[1], False);
  EXPECT_EQ(t.ChanDecimalsKnown[1], False);
  EXPECT_EQ(t.ChanIndicator[Item::Enabled][1], True);
  EXPECT_EQ(plant.manager.Publishing().Devices().Objects().At(1)->CDeviceDesc, "Silo");
  EXPECT_EQ(t.ChanConnected[2], False) << "a link of an unknown kind is not opened";
  EXPECT_EQ(t.ChanStatusText[2], "Initializing...") << "nor reported as failed";
  EXPECT_EQ(t.ChannelsInitialised, True);
}

TEST(InitialisationTest, ADisabledChannelStaysUnconnectedAndAVantOdbcChannelLightsItsLamp) {
  ColdPlant plant;
  plant.configuration.onRead = [&](int action, int number) {
    if (action == CfgAction::ReadChannelFile) plant.tables.ChanEnabled[number] = number == 1 ? True : False;
  };
  Timer1Tick(plant.cold);
  EXPECT_EQ(plant.tables.ChanStatusText[0], "Device Disabled...");
  EXPECT_EQ(plant.tables.ChanPrevGross[0], "-999999");
  EXPECT_EQ(plant.ports.port[0].opened, 0);
  EXPECT_EQ(plant.tables.ChanIndicator[Item::Sql][1], True);
}

/// Outcome of the first tick for channel 1 when opening its port fails.
void ExpectFailedChannel(const Tables& t) {
  EXPECT_EQ(t.ChanConnected[1], False);
  EXPECT_EQ(t.ChanEnabled[1], False);
  EXPECT_EQ(t.ChanStatusText[1], "Initialization Error...");
  EXPECT_EQ(t.ChanIndicator[Item::Enabled][1], False);
}

TEST(InitialisationTest, APortFaultDisablesItsChannelAndTheNextTickGoesOnBehindIt) {
  struct Case {
    int number;
    std::string log, box;
    int commPort;
    std::string settings;
  };
  const Case cases[] = {
      {8002, "Invalid COM: Port Selected.", "The COM: port you have selected is invalid.", 1, "9600,n,8,1"},
      {8005, "COM: Port Already In Use.", "The COM: port you have selected is already in use...", 6, "9600,N,8,1"},
  };
  for (const Case& c : cases) {
    ColdPlant plant;
    plant.ports.port[1].openError = c.number;
    EXPECT_EQ(Timer1Tick(plant.cold)->Number(), c.number);
    ExpectFailedChannel(plant.tables);
    EXPECT_EQ(plant.LogText(LogType::Error), "2026-01-02 03:04:05 @ Channel: 2  " + c.log +
                                                 "\r\n2026-01-02 03:04:05 @ Channel: 2  COM6 cannot be opened\r\n");
    ASSERT_EQ(plant.notice.boxes.size(), 1U);
    EXPECT_EQ(plant.notice.boxes[0].caption, "Tarvex Device Initialization Error");
    EXPECT_EQ(plant.notice.boxes[0].text, c.box + "\r\nRestoring default Tarvex Std. settings now...");
    EXPECT_EQ(plant.ports.port[1].settings, c.settings);
    EXPECT_EQ(plant.ports.port[1].commPort, c.commPort);
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

TEST(InitialisationTest, DamagedFilesCostATickEachAndNoOtherChannel) {
  ColdPlant plant;
  const auto read = plant.configuration.onRead;
  plant.configuration.onRead = [&plant, read](int action, int number) {
    read(action, number);
    if ((action == CfgAction::ReadFormatFile && number == 7) || (action == CfgAction::ReadChannelFile && number == 1)) {
      throw RunTimeError(ErrorNumber::InputPastEnd, "file " + std::to_string(number) + " ends too early");
    }
  };
  EXPECT_EQ(Timer1Tick(plant.cold)->Description(), "file 7 ends too early");
  EXPECT_EQ(Timer1Tick(plant.cold)->Description(), "file 1 ends too early");
  EXPECT_FALSE(Timer1Tick(plant.cold));
  ExpectFailedChannel(plant.tables);
  EXPECT_EQ(plant.tables.ChanConnected[0], True);
  EXPECT_EQ(plant.tables.ChanConnected[2], True);
  EXPECT_EQ(plant.notice.boxes.size(), 2U);
}

TEST(InitialisationTest, APortThatStaysClosedAndAMissingTerminalAreFailures) {
  ColdPlant plant;
  plant.tables.ChanConnectUsing[0] = ConnectUsing::ArcNet;
  plant.ports.port[1].refuseToOpen = true;
  EXPECT_FALSE(Timer1Tick(plant.cold));
  ExpectFailedChannel(plant.tables);
  EXPECT_EQ(plant.tables.ChanIndicator[Item::Error][1], True);
  EXPECT_EQ(plant.tables.ChanStatusText[0], "Initialization Error...");
  EXPECT_EQ(plant.tables.ChanEnabled[0], True) << "the terminal link can be tried again";
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
  plant.ports.port[1].openError = 8002;
  Timer1Tick(plant.cold);
  Timer1Tick(plant.cold);
  EXPECT_EQ(plant.notice.boxes.size(), 1U) << "a failed opening is not tried again by itself";
}

TEST(InitialisationTest, AnOpcChannelConnectsItsClientBeforeItsPortWhateverTheServerAnswers) {
  for (bool again : {false, true}) {
    ColdPlant plant;
    Tables& t = plant.tables;
    t.ChanOpcEnabled[1] = True;
    t.ChanOpcServerName[1] = "Srv";
    t.ChanOpcTag[0][1] = "G.CV";
    t.ChanOpcTag[2][1] = "  ";
    t.ChanOpcTag[6][1] = "S.CV";
    if (again) {
      t.ChannelsInitialised = True;
      t.ReinitChannel = 1;
      t.ChanEnabled[1] = True;
    }
    Timer1Tick(plant.cold);
    EXPECT_EQ(plant.opc.control[1].calls, (std::vector<std::string>{"server Srv", "node ", "rate 50", "connect",
                                                                    "tag 0 G.CV", "tag 6 S.CV", "group"}));
    const std::string mark = again ? "  h:" : " h:";
    EXPECT_EQ(plant.LogText(LogType::Opc),
              "2026-01-02 03:04:05 @ Device:1; Connecting... Status: Refused" + mark +
                  "7\r\n2026-01-02 03:04:05 @ Device:1; Creating Group/Tags... Status: No Server" + mark + "9\r\n");
    EXPECT_EQ(t.ChanConnected[1], True);
  }
}

}  // namespace
