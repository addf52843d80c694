#include "tests/config/config_plant.h"

namespace {

/// Channel 4 on COM7, 19200,E,7,1 with XON/XOFF; its port still has other settings.
class PortTrialTest : public testing::Test {
 protected:
  PortTrialTest() {
    plant.Run(CfgAction::ReadChannelFile, 4);
    plant.tables.ChanPort[4] = 6;
    plant.tables.ChanPortSetup[4] = 38;
    plant.tables.ChanXonXoff[4] = True;
    plant.tables.ChanEnabled[4] = True;
    port.commPort = 2;
    port.settings = "9600,N,8,1";
    port.open = true;
  }

  ConfigPlant plant;
  FakePort& port = plant.ports.port[4];
};

TEST_F(PortTrialTest, AnEnabledChannelsPortIsSetAndOpenedWhateverItIsConnectedBy) {
  plant.tables.ChanConnectUsing[4] = ConnectUsing::ArcNet;
  EXPECT_EQ(plant.Run(CfgAction::PortTrial, 4), "");
  EXPECT_TRUE(port.open);
  EXPECT_EQ(port.opened, 1) << "closed and opened again with the new settings";
  EXPECT_EQ(port.commPort, 7);
  EXPECT_EQ(port.settings, "19200,E,7,1");
  EXPECT_EQ(port.handshaking, 1);
  EXPECT_EQ(plant.tables.ChanAppliedPort[4], 7);
  EXPECT_EQ(plant.tables.ChanSavedPort[4], 2);
}

TEST_F(PortTrialTest, ADisabledChannelsPortIsSetAndStaysClosed) {
  plant.tables.ChanEnabled[4] = False;
  EXPECT_EQ(plant.Run(CfgAction::PortTrial, 4), "");
  EXPECT_FALSE(port.open);
  EXPECT_EQ(port.settings, "19200,E,7,1");
}

struct FaultCase {
  int error;
  const char* logText;
  const char* spoken;
  const char* boxText;
  Boolean enabledAfter;
};

TEST_F(PortTrialTest, ARefusedPortIsToldAndGetsItsOldSettingsBack) {
  const FaultCase cases[] = {
      {8012, "", ",  You have selected an invalid COM port. ", "", True},
      {8002, "Invalid COM: Port Selected.", ",  You have selected an invalid COM port. ",
       "The COM: port you have selected is invalid.\r\nDisabling Device Now...", False},
      {8005, "COM: Port Already In Use.", ",  You have selected a COM port that is already is use. ",
       "The COM: port you have selected is already in use...\r\nDisabling Device Now...", False},
      {57, "Critical Error: 57  COM7 cannot be opened", "",
       "Critical Error: 57  COM7 cannot be opened\r\nPlease Contact Orvane Technical Services...", True},
  };
  for (const FaultCase& c : cases) {
    plant.notice = {};
    plant.files.content.clear();
    plant.tables.SpeechEnabled = True;
    plant.tables.ChanEnabled[4] = True;
    port.commPort = 2;
    port.settings = "9600,N,8,1";
    port.openError = c.error;
    EXPECT_EQ(plant.Run(CfgAction::PortTrial, 4), "") << c.error;
    EXPECT_EQ(plant.tables.ChanEnabled[4], c.enabledAfter) << c.error;
    EXPECT_EQ(port.commPort, c.enabledAfter == True ? 7 : 2) << c.error;
    EXPECT_EQ(port.settings, c.enabledAfter == True ? "19200,E,7,1" : "9600,N,8,1") << c.error;

    const std::string log = *c.logText ? std::string("2026-01-02 03:04:05 @ ") + c.logText + "\r\n" : "";
    EXPECT_EQ(plant.LogText(LogType::Error), log);
    ASSERT_EQ(plant.notice.boxes.size(), *c.boxText ? 1U : 0U);
    if (*c.boxText) {
      EXPECT_EQ(plant.notice.boxes[0].caption, "Tarvex Setup Error");
      EXPECT_EQ(plant.notice.boxes[0].text, c.boxText);
    }
    ASSERT_EQ(plant.notice.spoken.size(), *c.spoken ? 1U : 0U);
    if (*c.spoken) {
      EXPECT_NE(plant.notice.spoken[0].find(std::string("Channel 5") + c.spoken), std::string::npos);
    }
  }
}

TEST_F(PortTrialTest, SavingAChannelWithARefusedPortWritesItDisabled) {
  port.openError = ErrorNumber::SerialPortInvalid;
  EXPECT_EQ(plant.Run(CfgAction::WriteChannelFile, 4), "");
  EXPECT_EQ(plant.Run(CfgAction::ReadChannelFile, 4), "");
  EXPECT_EQ(plant.tables.ChanEnabled[4], False);
  EXPECT_EQ(plant.tables.ChanPort[4], 6);
  EXPECT_TRUE(plant.notice.spoken.empty()) << "no word without the SPEECH word";
}

TEST_F(PortTrialTest, TheChannelIsDisabledEvenIfTheLogCannotTakeTheFault) {
  port.openError = ErrorNumber::SerialPortInUse;
  plant.files.broken["/plant/ErrorLog-Tarvex.txt"] = ErrorNumber::DiskFull;
  EXPECT_EQ(plant.Run(CfgAction::PortTrial, 4).substr(0, 2), "61");
  EXPECT_EQ(plant.tables.ChanEnabled[4], False);
  EXPECT_EQ(port.commPort, 2);
}

class RecordingScreen : public SetupScreen {
 public:
  std::string calls;
  void ShowChannel(int ch) override { calls += "1:" + std::to_string(ch) + " "; }
  void TakeChannel(int ch) override { calls += "2:" + std::to_string(ch) + " "; }
  void ShowProtocol(int proto) override { calls += "13:" + std::to_string(proto) + " "; }
  void TakeProtocol(int proto) override { calls += "14:" + std::to_string(proto) + " "; }
};

TEST(CfgProcTest, ScreenActionsReachTheScreenAndUnknownOnesNothing) {
  ConfigPlant plant;
  RecordingScreen screen;
  for (int action : {-1, 0, 12, 18, 1, 2, 13, 14}) EXPECT_EQ(plant.Run(action, 3), "");
  plant.manager.Configuring().SetSetupScreen(&screen);
  for (int action : {14, 12, 13, 2, 1, 99}) EXPECT_EQ(plant.Run(action, 3), "");
  EXPECT_EQ(screen.calls, "14:3 13:3 2:3 1:3 ");
  EXPECT_TRUE(plant.files.content.empty());

  plant.tables.ChanEnabled[3] = True;
  EXPECT_EQ(plant.Run(CfgAction::DisableChannel, 3), "");
  EXPECT_EQ(plant.tables.ChanEnabled[3], False);
  EXPECT_TRUE(plant.files.content.empty()) << "disabling touches no file";
}

}  // namespace
