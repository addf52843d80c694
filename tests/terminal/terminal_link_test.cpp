#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/offline.h"
#include "tests/support/test_plant.h"

namespace {

constexpr int kCh = 3;

/// Channel 4 reads the weight of terminal 6, and channel 5 is another one of the same network.
class TerminalLinkTest : public testing::Test {
 protected:
  TerminalLinkTest() {
    tables.MaxChannel = 5;
    for (int ch : {kCh, kCh + 1}) {
      tables.ChanProtocol[ch] = 2;
      tables.ChanConnectUsing[ch] = ConnectUsing::ArcNet;
      tables.ChanDeviceID[ch] = ch == kCh ? "6" : "7";
      tables.ChanEnabled[ch] = True;
    }
    terminals.field["/v6/wt101"] = "   12.5 ";
    terminals.field["/v7/wt101"] = "   70.0 ";
  }
  void Reopen(int ch) {
    tables.ReinitChannel = static_cast<std::int16_t>(ch);
    plant.Tick();
  }
  const std::string& Caption(int ch = kCh) { return tables.ChanStatusText[ch]; }

  TestPlant plant;
  Tables& tables = plant.tables;
  MemoryTerminals& terminals = plant.terminals;
};

TEST_F(TerminalLinkTest, AllTerminalsShareOneRegistration) {
  Reopen(kCh);
  EXPECT_EQ(tables.ChanConnected[kCh], False) << "the channel waits for the pass behind its registration";
  plant.Tick();
  EXPECT_EQ(tables.ChanConnected[kCh], True);
  Reopen(kCh + 1);
  EXPECT_EQ(terminals.registrations, 1);
  plant.Tick();
  EXPECT_EQ(tables.ChanGross[kCh], "12.5");
  EXPECT_EQ(tables.ChanGross[kCh + 1], "70.0");
  EXPECT_EQ(Caption(), "Ready...");
}

TEST_F(TerminalLinkTest, ARegistrationThatFailsIsTriedByEachPassUntilItHolds) {
  terminals.refusal = VantStatusCode::BadConnect;
  tables.SpeechEnabled = True;
  Reopen(kCh);
  EXPECT_EQ(Caption(), "Initialization Error...");
  EXPECT_EQ(tables.ChanIndicator[Item::Error][kCh], True);
  EXPECT_EQ(plant.notice.spoken.size(), 1U);
  EXPECT_EQ(tables.TerminalLinkRetry, True);
  plant.Tick();
  terminals.refusal = VantStatusCode::Success;
  plant.Tick();
  EXPECT_EQ(tables.TerminalLinkUp, True);
  EXPECT_EQ(tables.TerminalLinkRetry, False);
  EXPECT_EQ(tables.ChanConnected[kCh], False) << "it is opened by its setup alone";
}

TEST_F(TerminalLinkTest, ATerminalThatDoesNotAnswerIsGivenUpAtOnceAndItsWeightMarkedOld) {
  tables.ChanDdeServer[kCh] = True;
  Reopen(kCh);
  for (int tick = 0; tick < 2; ++tick) plant.Tick();
  EXPECT_EQ(plant.manager.Publishing().Topics().Request(kCh, 0), "12.5");
  terminals.field.erase("/v6/wt101");
  plant.Tick();
  EXPECT_EQ(Caption(), "Network ID Error...");
  EXPECT_EQ(tables.ChanEnabled[kCh], False);
  EXPECT_EQ(tables.ChanIndicator[Item::Enabled][kCh], False);
  EXPECT_EQ(plant.manager.Publishing().Topics().Request(kCh, 3), "16");
  EXPECT_THAT(plant.LogText(LogType::Error),
              testing::HasSubstr("Channel: 4  Network ID Error: status 65 of /v6/wt101"));
  plant.Tick();
  EXPECT_EQ(tables.ChanGross[kCh], "");
}

TEST_F(TerminalLinkTest, AHeldScanMarksTheWeightOldAndTheNextReadPutsThatRight) {
  tables.ChanDdeServer[kCh] = True;
  tables.ChanTimeout[kCh] = 5;
  Reopen(kCh);
  for (int tick = 0; tick < 2; ++tick) plant.Tick();
  tables.ChanStatusBits[kCh] = 3;  // of a device that was on this channel before
  FallOffline(plant.engine, kCh);
  plant.engine.publisher.Flush(kCh);
  EXPECT_EQ(plant.manager.Publishing().Topics().Request(kCh, 3), "19");
  plant.Tick();
  EXPECT_EQ(plant.manager.Publishing().Topics().Request(kCh, 3), "0");
  EXPECT_EQ(Caption(), "Ready...");
}

}  // namespace
