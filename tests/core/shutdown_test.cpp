#include "core/shutdown.h"

#include <gtest/gtest.h>

#include "tests/support/test_plant.h"

namespace {

TEST(ShutdownTest, ClosingTheWindowStopsTheScanAndClosesEveryLink) {
  TestPlant plant;
  plant.Connect(0, 2);
  plant.Connect(31, 2);
  plant.tables.ChanOpcEnabled[31] = True;
  plant.events.timer1.enabled = true;
  plant.files.broken["/plant/OPCLog-Tarvex.txt"] = ErrorNumber::DiskFull;
  CloseTXMWindow(plant.engine);
  EXPECT_FALSE(plant.events.timer1.enabled);
  for (int ch : {0, 31}) {
    EXPECT_FALSE(plant.ports.Port(ch).PortOpen());
    EXPECT_EQ(plant.tables.ChanConnected[ch], False);
  }
  EXPECT_EQ(plant.opc.control[31].calls, (std::vector<std::string>{"delete group", "disconnect"}))
      << "a log that cannot be written leaves no connection standing";
  EXPECT_TRUE(plant.notice.boxes.empty()) << "faults in closing are not reported";
}

TEST(ShutdownTest, ClosingTakesTheOpcGroupDownWithItsLogLines) {
  TestPlant plant;
  plant.Connect(2, 2);
  plant.tables.ChanOpcEnabled[2] = True;
  CloseTXMWindow(plant.engine);
  EXPECT_EQ(plant.opc.control[2].calls, (std::vector<std::string>{"delete group", "disconnect"}));
  EXPECT_EQ(plant.LogText(LogType::Opc),
            "2026-01-02 03:04:05 @ Device:2; Deleting Group... StatusNo Server\r\n"
            "2026-01-02 03:04:05 @ Device:2; Disconnecting... StatusRefused\r\n");
}

TEST(ShutdownTest, TheEndTaskClosesPortsThatAreStillOpenOnEveryControl) {
  TestPlant plant;
  plant.tables.MaxChannel = 7;
  plant.ports.port[31].open = true;
  TaskCtrl(plant.engine, 5);
  EXPECT_TRUE(plant.ports.port[31].open);
  TaskCtrl(plant.engine, 6);
  EXPECT_FALSE(plant.ports.port[31].open);
}

TEST(ShutdownTest, UnloadingTheMainFormSaysSoAndForgetsWhatWasReceived) {
  TestPlant plant;
  plant.tables.TerminalLinkUp = True;
  plant.tables.ChanRxBuffer[31] = "half a stre";
  Unload_Tarvex_MainForm(plant.engine);
  EXPECT_EQ(plant.tables.ChanRxBuffer[31], "");
  EXPECT_EQ(plant.tables.TerminalLinkUp, False);
  EXPECT_EQ(plant.LogText(LogType::Activity), "2026-01-02 03:04:05 @ Tarvex Manager Terminated\r\n");
}

}  // namespace
