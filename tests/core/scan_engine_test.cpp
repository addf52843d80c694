#include "core/scan_engine.h"

#include <gtest/gtest.h>

#include "tests/support/test_plant.h"

namespace {

/// A database room that raises the error under test in the visit to its channel.
class RaisingTerminal : public AbsentTerminal {
 public:
  int number = 0;
  std::string description = "Out of paper";
  void ServeDatabase(int) override {
    if (number != 0) throw RunTimeError(number, description);
  }
};

struct TrapPlant : TestPlant {
  RaisingTerminal terminal;
  Engine raising = EngineWith({.terminal = &terminal});
  /// One tick in which the visit to channel 3 ends with error `number`.
  std::optional<RunTimeError> TickWithFault(int number) {
    Connect(3, 0);
    Connect(4, 2);
    for (int item : {Item::Rx, Item::Tx}) tables.ChanIndicator[item][3] = True;
    ports.port[4].waiting = "\n";
    terminal.number = number;
    return Timer1Tick(raising);
  }
};

TEST(ScanEngineTest, ATickThatComesInsideATickIsNotCountedAndLeavesTheGuardAlone) {
  TestPlant plant;
  plant.tables.ScanBusy = True;
  plant.Tick();
  EXPECT_EQ(plant.tables.ScanTick, 0);
  EXPECT_EQ(plant.tables.ScanBusy, True);
}

TEST(ScanEngineTest, PendingEventsRunBeforeTheGuardIsSet) {
  TestPlant plant;
  int depth = 0;
  plant.events.onDoEvents = [&] {
    EXPECT_EQ(plant.tables.ScanBusy, False);
    if (++depth == 1) plant.Tick();
  };
  plant.Tick();
  EXPECT_EQ(plant.tables.ScanTick, 2) << "the tick that ran among the events counts like any other";
}

TEST(ScanEngineTest, TheCountReachesTenMillionBeforeItReturnsToZeroAndSleepIsOptional) {
  TestPlant plant;
  plant.tables.ScanTick = 9'999'999;
  plant.Tick();
  EXPECT_EQ(plant.tables.ScanTick, 10'000'000);
  EXPECT_EQ(plant.system.sleeps, 0);
  plant.tables.Timer1Sleep = 2;
  plant.Tick();
  EXPECT_EQ(plant.tables.ScanTick, 0);
  EXPECT_EQ(plant.tables.ScanTickWrapped, True);
  plant.Tick();
  EXPECT_EQ(plant.tables.ScanTickWrapped, True) << "set once, never cleared";
  EXPECT_EQ(plant.system.sleeps, 2);
}

TEST(ScanEngineTest, AfterAWrapLampsAndTimeOutsFireEarlyOnceRatherThanHang) {
  TestPlant plant;
  plant.Connect(0, 2);
  plant.tables.ChanTimeout[0] = 5000;
  plant.tables.ScanTick = 10'000'000;
  plant.tables.ChanLastRxTick[0] = 9'999'999;
  plant.Tick();
  EXPECT_EQ(plant.tables.ChanStatusText[0], "Offline...");
}

TEST(ScanEngineTest, TheFirstTickOfASecondEndsTheCountAndIsNotCounted) {
  TestPlant plant;
  plant.tables.RefreshOpen = True;
  std::string shown;
  for (std::int64_t second : {10, 10, 10, 11, 12}) {
    plant.system.second = second;
    plant.Tick();
    shown += std::to_string(plant.dialogs.rate[1]);
  }
  EXPECT_EQ(shown, "00020");
}

TEST(ScanEngineTest, TheStartupMinimiseHappensOnceAndNotAfterItsWord) {
  struct TrayForm : HeadlessMainForm {
    int put = 0;
    void PutInTray() override { ++put; }
  };
  for (bool noMinimize : {false, true}) {
    TestPlant plant;
    TrayForm form;
    Engine engine = plant.EngineWith({.mainForm = &form});
    plant.tables.FirstScanPending = True;
    plant.tables.NoMinimize = AsBoolean(noMinimize);
    Timer1Tick(engine);
    EXPECT_EQ(plant.tables.FirstScanPending, True) << "no channel is connected yet";
    plant.Connect(0, 2);
    plant.Connect(1, 2);
    Timer1Tick(engine);
    Timer1Tick(engine);
    EXPECT_EQ(form.put, noMinimize ? 0 : 1);
  }
}

TEST(ScanEngineTest, ADatabaseFaultHasItsLogLineAndLeavesTheChannelReady) {
  const std::pair<int, std::string> cases[] = {{2400, "JET Expression Error: "}, {2499, "JET Expression Error: "},
                                               {3000, "JET Database Error: "},   {3999, "JET Database Error: "},
                                               {40000, "RDO Error: "},           {40999, "RDO Error: "}};
  for (const auto& [number, text] : cases) {
    TrapPlant plant;
    EXPECT_EQ(plant.TickWithFault(number)->Number(), number);
    EXPECT_EQ(plant.LogText(LogType::Error),
              "2026-01-02 03:04:05 @ Channel: 4  " + text + std::to_string(number) + "  Out of paper\r\n");
    EXPECT_EQ(plant.tables.ChanStatusText[3], "Ready...");
    EXPECT_EQ(plant.tables.ChanIndicator[Item::Error][3], False);
    EXPECT_TRUE(plant.notice.boxes.empty());
  }
}

TEST(ScanEngineTest, AnyOtherFaultIsCriticalAndCostsTheRestOfTheTickAlone) {
  for (int number : {9, 2399, 2500, 4000, 41000}) {
    TrapPlant plant;
    plant.TickWithFault(number);
    const std::string both = std::to_string(number) + "  Out of paper";
    EXPECT_EQ(plant.LogText(LogType::Error), "2026-01-02 03:04:05 @ Channel: 4  Critical Error: " + both + "\r\n");
    ASSERT_EQ(plant.notice.boxes.size(), 1U);
    EXPECT_EQ(plant.notice.boxes[0].caption, "Tarvex Scan System Error");
    EXPECT_EQ(plant.notice.boxes[0].text,
              "Critical Error: " + both + "\r\nPlease Contact Orvane Technical Services...");
    for (int item : {Item::Error, Item::Rx, Item::Tx}) EXPECT_EQ(plant.tables.ChanIndicator[item][3], False);
    for (int item = 0; item < Item::Count; ++item) EXPECT_EQ(plant.tables.ChanDirty[item][31], True);
    EXPECT_EQ(plant.tables.ChanDirty[13][31], False);
    EXPECT_EQ(plant.tables.ScanBusy, False);
    EXPECT_EQ(plant.ports.port[4].waiting, "\n") << "the channels behind are not served";
    plant.terminal.number = 0;
    EXPECT_FALSE(Timer1Tick(plant.raising));
    EXPECT_EQ(plant.ports.port[4].waiting, "") << "they are in the next tick";
  }
}

TEST(ScanEngineTest, APortThatIsNotOpenReadsAsSilenceWithoutAMessage) {
  TestPlant plant;
  plant.Connect(3, 2);
  plant.Connect(4, 2);
  plant.tables.ChanTimeout[3] = 1;
  plant.ports.port[3].open = false;
  plant.ports.port[4].waiting = "\n";
  EXPECT_FALSE(Timer1Tick(plant.engine));
  EXPECT_EQ(plant.tables.ChanStatusText[3], "Offline...");
  EXPECT_EQ(plant.ports.port[4].waiting, "");
  EXPECT_EQ(plant.LogText(LogType::Error), "");
  EXPECT_TRUE(plant.notice.boxes.empty());
}

TEST(ScanEngineTest, AnErrorLogThatCannotBeWrittenIsToldToTheOperator) {
  TrapPlant plant;
  plant.files.broken["/plant/ErrorLog-Tarvex.txt"] = ErrorNumber::DiskFull;
  plant.TickWithFault(9);
  ASSERT_EQ(plant.notice.boxes.size(), 2U);
  EXPECT_EQ(plant.notice.boxes[0].text,
            "Channel: 4  Critical Error: 9  Out of paper\r\nCannot use /plant/ErrorLog-Tarvex.txt");
}

TEST(ScanEngineTest, AnUnconnectedChannelShowsEmptyWeights) {
  TestPlant plant;
  plant.tables.MaxChannel = 7;
  plant.tables.ChanGross[7] = plant.tables.ChanGross[8] = "12.5";
  plant.Tick();
  EXPECT_EQ(plant.tables.ChanGross[7], "");
  for (int item : {Item::Gross, Item::Tare, Item::NetWeight}) EXPECT_EQ(plant.tables.ChanDirty[item][7], True);
  EXPECT_EQ(plant.tables.ChanGross[8], "12.5") << "channels above the highest are not visited";
}

}  // namespace
