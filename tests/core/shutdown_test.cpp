#include "core/shutdown.h"

#include <gtest/gtest.h>

#include "core/startup.h"
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

TEST(ShutdownTest, ATickThatLetTheStopInOpensNothingAndTheNextStartRunsAgain) {
  TestPlant plant;
  LaunchMainScreen(plant.engine);
  plant.events.onDoEvents = [&] { CloseTXMWindow(plant.engine); };
  plant.Tick();
  EXPECT_EQ(plant.tables.ChannelsInitialised, False);
  EXPECT_EQ(plant.tables.ScanBusy, False);

  plant.events.onDoEvents = nullptr;
  LaunchMainScreen(plant.engine);
  plant.Tick();
  EXPECT_EQ(plant.tables.ChannelsInitialised, True);
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

}  // namespace
