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
  MemoryPort& port = plant.ports.port[4];
};

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

}  // namespace
