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

TEST_F(PortTrialTest, ARefusedPortIsToldAndGetsItsOldSettingsBack) {
  const std::string at = "2026-01-02 03:04:05 @ ", caption = "Tarvex Setup Error: ";
  const std::string invalid = "Channel 5,  You have selected an invalid COM port. ";
  struct Case {
    int error;
    std::string log, box, spoken;
    bool refused;
  };
  const Case cases[] = {
      {8012, "", "", invalid, false},
      {8002, at + "Invalid COM: Port Selected.\r\n",
       caption + "The COM: port you have selected is invalid.\r\nDisabling Device Now...", invalid, true},
      {8005, at + "COM: Port Already In Use.\r\n",
       caption + "The COM: port you have selected is already in use...\r\nDisabling Device Now...",
       "Channel 5,  You have selected a COM port that is already is use. ", true},
      {57, at + "Critical Error: 57  COM7 cannot be opened\r\n",
       caption + "Critical Error: 57  COM7 cannot be opened\r\nPlease Contact Orvane Technical Services...", "", false},
  };
  for (const Case& c : cases) {
    plant.notice = {};
    plant.files.content.clear();
    plant.tables.SpeechEnabled = plant.tables.ChanEnabled[4] = True;
    port.commPort = 2;
    port.settings = "9600,N,8,1";
    port.openError = c.error;
    EXPECT_EQ(plant.Run(CfgAction::PortTrial, 4), "") << c.error;
    EXPECT_EQ(plant.tables.ChanEnabled[4], AsBoolean(!c.refused)) << c.error;
    EXPECT_EQ(port.commPort, c.refused ? 2 : 7) << c.error;
    EXPECT_EQ(port.settings, c.refused ? "9600,N,8,1" : "19200,E,7,1") << c.error;
    std::string box, spoken;
    for (const auto& each : plant.notice.boxes) box += each.caption + ": " + each.text;
    for (const auto& each : plant.notice.spoken) spoken += each;
    EXPECT_EQ(plant.LogText(LogType::Error), c.log);
    EXPECT_EQ(box, c.box);
    EXPECT_EQ(spoken.empty(), c.spoken.empty());
    EXPECT_NE(spoken.find(c.spoken), std::string::npos) << spoken;
  }
}

}  // namespace
