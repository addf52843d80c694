#include "core/transmission.h"

#include <gtest/gtest.h>

#include "tests/support/test_plant.h"

namespace {

/// Runs the transmission timer and returns, for each tick, how many characters have gone out by then.
std::string Pace(TestPlant& plant, int ticks) {
  std::string counts;
  for (int tick = 0; tick < ticks; ++tick) {
    TxTimerTick(plant.engine);
    counts += std::to_string(plant.ports.port[0].sent.size());
  }
  return counts;
}

TEST(TransmissionTest, TheDelayPacesTheQueueOneCharacterAtATime) {
  struct Case {
    int delay;
    int ticks;
    std::string sent;
  };
  const Case cases[] = {{12, 5, "12333"},
                        {15, 7, "0112233"},  // a ratio of 1 needs two ticks
                        {150, 23, "00000000001111111111122"},
                        {0, 4, "0000"},
                        {-5, 4, "0000"}};
  for (const Case& c : cases) {
    TestPlant plant;
    plant.Connect(0, 2);
    plant.tables.ChanTxDelay[0] = c.delay;
    plant.tables.ChanTxQueue[0] = "ABC";
    EXPECT_EQ(Pace(plant, c.ticks), c.sent) << c.delay;
  }
}

TEST(TransmissionTest, OnlyConnectedSerialChannelsSend) {
  TestPlant plant;
  for (int ch : {0, 1, 2}) {
    plant.Connect(ch, 2);
    plant.tables.ChanTxDelay[ch] = 12;
    plant.tables.ChanTxQueue[ch] = "A";
  }
  plant.tables.ChanConnected[0] = False;
  plant.tables.ChanConnectUsing[1] = ConnectUsing::ArcNet;
  TxTimerTick(plant.engine);
  for (int ch : {0, 1, 2}) EXPECT_EQ(plant.ports.port[static_cast<std::size_t>(ch)].sent.size(), ch == 2 ? 1U : 0U);
}

TEST(TransmissionTest, TheLampIsOnWhileTheQueueIsSentAndOffBehindIt) {
  TestPlant plant;
  plant.Connect(0, 2);
  Tables& t = plant.tables;
  t.ScanTick = 5;
  t.ChanTxDelay[0] = 12;
  t.ChanTxQueue[0] = "AB";
  TxTimerTick(plant.engine);
  EXPECT_EQ(t.ChanIndicator[Item::Tx][0], True);
  TxTimerTick(plant.engine);
  TxTimerTick(plant.engine);
  EXPECT_EQ(t.ChanIndicator[Item::Tx][0], False);
  EXPECT_EQ(t.ChanDirty[Item::Tx][0], True);
}

TEST(TransmissionTest, WhileTheQueueWaitsTheLampGoesOffUnlessMinimised) {
  for (bool minimized : {false, true}) {
    TestPlant plant;
    plant.Connect(0, 2);
    Tables& t = plant.tables;
    t.Minimized = AsBoolean(minimized);
    t.ChanTxDelay[0] = 150;
    t.ChanTxQueue[0] = "AB";
    t.ChanIndicator[Item::Tx][0] = True;
    t.ScanTick = 1;
    TxTimerTick(plant.engine);
    EXPECT_EQ(t.ChanIndicator[Item::Tx][0], True) << "one tick is not older than one tick";
    t.ScanTick = 2;
    TxTimerTick(plant.engine);
    EXPECT_EQ(t.ChanIndicator[Item::Tx][0], minimized ? True : False);
  }
}

TEST(TransmissionTest, TheCountWrapsAndAVanishedPortDoesNotStopTheOthers) {
  TestPlant plant;
  Tables& t = plant.tables;
  for (int ch : {0, 1}) {
    plant.Connect(ch, 2);
    t.ChanTxDelay[ch] = 150;
    t.ChanTxQueue[ch] = "A";
    t.ChanTxTick[ch] = 10'000'000;
  }
  plant.ports.port[0].open = false;
  t.TxTick = 10'000'000;
  TxTimerTick(plant.engine);
  EXPECT_EQ(t.TxTick, 0);
  EXPECT_EQ(t.TxTickWrapped, True);
  EXPECT_EQ(plant.ports.port[1].sent, std::vector<std::string>{"A"}) << "a wrap makes the pace early once";
  TxTimerTick(plant.engine);
  EXPECT_EQ(t.TxTickWrapped, False);
}

}  // namespace
