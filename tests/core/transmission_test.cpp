#include "core/transmission.h"

#include <gtest/gtest.h>

#include <map>

#include "core/lamps.h"
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
  const std::tuple<int, int, std::string> cases[] = {{12, 5, "12333"},
                                                     {15, 7, "0112233"},  // a ratio of 1 needs two ticks
                                                     {150, 23, "00000000001111111111122"},
                                                     {0, 4, "0000"},
                                                     {-5, 4, "0000"}};
  for (const auto& [delay, ticks, sent] : cases) {
    TestPlant plant;
    plant.Connect(0, 2);
    plant.tables.ChanTxDelay[0] = delay;
    plant.tables.ChanTxQueue[0] = "ABC";
    EXPECT_EQ(Pace(plant, ticks), sent) << delay;
  }
}

TEST(TransmissionTest, OnlyConnectedSerialChannelsSendAndAVanishedPortDoesNotStopTheOthers) {
  TestPlant plant;
  for (int ch : {0, 1, 2, 3}) {
    plant.Connect(ch, 2);
    plant.tables.ChanTxDelay[ch] = 12;
    plant.tables.ChanTxQueue[ch] = "A";
  }
  plant.tables.ChanConnected[0] = False;
  plant.tables.ChanConnectUsing[1] = ConnectUsing::ArcNet;
  plant.ports.port[2].open = false;
  TxTimerTick(plant.engine);
  for (int ch : {0, 1, 2, 3}) EXPECT_EQ(plant.ports.port[static_cast<std::size_t>(ch)].sent.size(), ch == 3 ? 1U : 0U);
}

/// Draws nothing, and counts which lamps it was asked to draw.
class CountingForm : public HeadlessMainForm {
 public:
  void DrawItem(int, int item) override { ++drawn[item]; }
  std::map<int, int> drawn;
};

TEST(TransmissionTest, TrafficLampsAreDrawnByWhoTurnsThemOnAndOff) {
  TestPlant plant;
  CountingForm form;
  Engine engine = plant.EngineWith({.mainForm = &form});
  plant.Connect(0, 2);
  const auto lampIs = [&](int item, bool on, int draws) {
    EXPECT_EQ(plant.tables.ChanIndicator[item][0] == True, on) << item;
    EXPECT_EQ(form.drawn[item], draws) << item;
  };
  ++plant.tables.ScanTick;
  TurnRXLedON(plant.tables, form, 0);
  TurnRXLedON(plant.tables, form, 0);
  lampIs(Item::Rx, true, 1);
  ++plant.tables.ScanTick;
  TurnRXLedOff(plant.tables, form, 0);
  lampIs(Item::Rx, false, 2);
  plant.tables.ChanTxDelay[0] = 12;
  plant.tables.ChanTxQueue[0] = "A";
  TxTimerTick(engine);
  lampIs(Item::Tx, true, 1);
  TxTimerTick(engine);
  lampIs(Item::Tx, false, 2);
}

}  // namespace
