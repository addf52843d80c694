#include "core/scan_engine.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "core/shutdown.h"
#include "tests/support/test_plant.h"

namespace {

/// A database room that raises the error under test in the visit to its channel.
class RaisingTerminal : public TerminalRoom {
 public:
  int number = 0;
  std::string description = "Out of paper";
  int answers = 0;
  void ServeDatabase(int) override {
    if (number != 0) throw RunTimeError(number, description);
  }
  void AnswerError(int) override { ++answers; }
  void OpenWorkspaces() override {}
  void CloseWorkspaces() override {}
  TerminalLinkState OpenArcNet(int, bool) override { return TerminalLinkState::Down; }
  void ServeUnconnected(int) override {}
  void ReadArcNet(int) override {}
  void CloseProcess() override {}
  void AbandonStatements() override {}
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

TEST(ScanEngineTest, AFaultBeforeAnyVisitIsToldOnceAndTouchesNoChannel) {
  TestPlant plant;
  plant.Connect(0, 2);
  plant.ports.pollError = ErrorNumber::Internal;
  for (int tick = 0; tick < 3; ++tick) plant.Tick();
  EXPECT_EQ(plant.LogText(LogType::Error), "2026-01-02 03:04:05 @ Scan:  Critical Error: " +
                                               std::to_string(ErrorNumber::Internal) + "  poll failed\r\n");
  EXPECT_EQ(plant.notice.boxes.size(), 1U);
  EXPECT_EQ(plant.tables.ChanIndicator[Item::Error][0], False);
}

TEST(ScanEngineTest, TheCountReachesTenMillionAndAfterItsWrapTimeOutsFireEarlyRatherThanHang) {
  TestPlant plant;
  plant.Connect(0, 2);
  plant.tables.ChanTimeout[0] = 5000;
  plant.tables.ChanStreamEndTick[0] = 9'999'998;
  plant.tables.ScanTick = 9'999'999;
  plant.Tick();
  EXPECT_EQ(plant.tables.ScanTick, 10'000'000);
  EXPECT_NE(plant.tables.ChanStatusText[0], "Offline...");
  plant.Tick();
  EXPECT_EQ(plant.tables.ScanTick, 0);
  EXPECT_EQ(plant.tables.ChanStatusText[0], "Offline...");
}

TEST(ScanEngineTest, ADatabaseFaultHasItsLogLineAndLeavesTheChannelReady) {
  const std::pair<int, std::string> cases[] = {{2400, "JET Expression Error: "},
                                               {2499, "JET Expression Error: "},
                                               {3000, "JET Database Error: "},
                                               {40999, "RDO Error: "}};
  for (const auto& [number, text] : cases) {
    TrapPlant plant;
    EXPECT_EQ(plant.TickWithFault(number)->Number(), number);
    EXPECT_EQ(plant.LogText(LogType::Error),
              "2026-01-02 03:04:05 @ Channel: 4  " + text + std::to_string(number) + "  Out of paper\r\n");
    EXPECT_EQ(plant.tables.ChanStatusText[3], "Ready...");
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
    EXPECT_EQ(plant.tables.ScanBusy, False);
    EXPECT_EQ(plant.ports.port[4].waiting, "\n") << "the channels behind are not served";
    plant.terminal.number = 0;
    EXPECT_FALSE(Timer1Tick(plant.raising));
    EXPECT_EQ(plant.ports.port[4].waiting, "") << "they are in the next tick";
  }
}

TEST(ScanEngineTest, AFaultOfEveryTickCostsNoOtherChannelMoreThanEverySecondVisit) {
  for (const int faulty : {0, 3, 31}) {
    TrapPlant plant;
    for (int ch = 0; ch <= 31; ++ch) plant.Connect(ch, ch == faulty ? 0 : 2);
    plant.terminal.number = 9;
    for (int tick = 0; tick < 10; ++tick) {
      for (int ch = 0; ch <= 31; ++ch) plant.ports.port[static_cast<std::size_t>(ch)].waiting = "\n";
      for (int half = 0; half < 2; ++half) EXPECT_TRUE(Timer1Tick(plant.raising));
      for (int ch = 0; ch <= 31; ++ch) {
        EXPECT_EQ(plant.ports.port[static_cast<std::size_t>(ch)].waiting.empty(), ch != faulty) << ch;
      }
    }
  }
}

TEST(ScanEngineTest, AFaultThatLastsIsToldOnceAndItsRepeatsAreCountedWhenItEnds) {
  TrapPlant plant;
  const auto lines = [&] { return std::ranges::count(plant.LogText(LogType::Error), '\n'); };
  const std::string line = "Channel: 4  Critical Error: 9  Out of paper";
  for (int tick = 0; tick < 100; ++tick) {
    plant.system.second += 3600;  // a clock that is set forward ends nothing
    plant.TickWithFault(9);
  }
  EXPECT_EQ(lines(), 1);
  EXPECT_EQ(plant.notice.boxes.size(), 1U);
  plant.terminal.description = "Out of ink";
  plant.TickWithFault(9);
  EXPECT_EQ(lines(), 2) << "another fault is told";

  plant.terminal.number = 0;
  for (int second = 1; second <= 60; ++second) {
    ++plant.system.second;
    Timer1Tick(plant.raising);
    EXPECT_EQ(lines(), second < 60 ? 2 : 3);
  }
  EXPECT_NE(plant.LogText(LogType::Error).find(line + ", came back 99 times\r\n"), std::string::npos);
  plant.terminal.description = "Out of paper";
  plant.TickWithFault(9);
  EXPECT_EQ(plant.notice.boxes.size(), 3U) << "a minute without it: it is told again";
  plant.TickWithFault(9);
  CloseLinks(plant.raising);
  EXPECT_NE(plant.LogText(LogType::Error).find(line + ", came back 1 times\r\n"), std::string::npos);
}

TEST(ScanEngineTest, AnErrorLogThatCannotBeWrittenIsToldToTheOperator) {
  TrapPlant plant;
  plant.files.broken["/plant/ErrorLog-Tarvex.txt"] = ErrorNumber::DiskFull;
  plant.TickWithFault(9);
  ASSERT_EQ(plant.notice.boxes.size(), 2U);
  EXPECT_EQ(plant.notice.boxes[0].text,
            "Channel: 4  Critical Error: 9  Out of paper\r\nCannot use /plant/ErrorLog-Tarvex.txt");
}

}  // namespace
