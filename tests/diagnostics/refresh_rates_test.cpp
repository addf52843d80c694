#include "diagnostics/refresh_rates.h"

#include <gmock/gmock.h>

#include "core/gdi_timer.h"
#include "core/transmission.h"
#include "tests/support/test_plant.h"

namespace {

TEST(RefreshRatesTest, TheSliderStandsWhereScanAndDrawingPutIt) {
  const std::pair<RateValues, int> cases[] = {
      {{19, 1, 15, 1, 19, 1}, 0},     {{20, 1, 15, 1, 19, 1}, 1}, {{19, 2, 15, 1, 19, 1}, 1},
      {{19, 1, 15, 1, 20, 1}, 1},     {{19, 1, 15, 1, 19, 2}, 1}, {{39, 3, 15, 1, 39, 3}, 1},
      {{40, 1, 15, 1, 1, 1}, 2},      {{1, 1, 15, 1, 1, 4}, 2},   {{25, 2, 15, 0, 25, 1}, 1},  // as delivered
      {{1, 0, 60000, 1000, 1, 0}, 0},  // the Tx column has no say
  };
  for (const auto& [values, position] : cases) EXPECT_EQ(SliderPosition(values), position);
  EXPECT_EQ(SliderValues(0), (RateValues{1, 0, 15, 1, 15, 0}));
  EXPECT_EQ(SliderValues(1), (RateValues{25, 1, 15, 1, 25, 1}));
  EXPECT_EQ(SliderValues(2), (RateValues{50, 5, 15, 1, 50, 5}));
}

TEST(RefreshRatesTest, WhatIsTypedCannotStopTheSystem) {
  const struct {
    int box;
    const char* text;
    int value;
  } cases[] = {{0, "30", 30},  {0, "0", 1}, {0, "-5", 1},      {0, "99999999999", 60000}, {0, "", 77},
               {0, "12x", 77}, {1, "0", 0}, {1, "1001", 1000}, {1, "-99999999999", 0},    {5, "1.5", 77},
               {2, "0", 1}};
  for (const auto& c : cases) EXPECT_EQ(RateFromText(c.box, c.text, 77), c.value) << c.box << " '" << c.text << "'";
}

TEST(RefreshRatesTest, TheMeaningCountsTheIntervalsAndThePausesOfADrawing) {
  EXPECT_EQ(RateMeaning({25, 2, 15, 0, 25, 1}, 32),
            "At most 29 scans a second. A change is on the screen after 91 ms at the longest.");
  EXPECT_EQ(RateMeaning({25, 0, 15, 0, 25, 0}, 32),
            "At most 40 scans a second. A change is on the screen after 50 ms at the longest.");
  EXPECT_EQ(RateMeaning({100, 100, 15, 0, 25, 0}, 32),
            "At most 10 scans a second. A change is on the screen after 125 ms at the longest.");
  EXPECT_EQ(RateMeaning({1, 0, 15, 1, 1000, 1}, 32),
            "At most 968 scans a second. A change is on the screen after 1064 ms at the longest.");
  EXPECT_EQ(RateMeaning({60000, 0, 15, 0, 25, 0}, 32),
            "At most one scan in 60000 ms. A change is on the screen after 60025 ms at the longest.");
}

TEST(RefreshRatesTest, OpeningShowsTheIntervalsThatRunAndTheScanTellsItsRateUntilTheDialogCloses) {
  TestPlant plant;
  plant.events.timer1.interval = 33;
  plant.events.gdiTimer.interval = 44;
  plant.tables.TxTimerSleep = 7;
  EXPECT_EQ(OpenRefresh(plant.engine), (RateValues{33, plant.tables.Timer1Sleep, 15, 7, 44, 1}));

  for (int tick = 0; tick < 3; ++tick) plant.Tick();
  ++plant.system.second;
  plant.Tick();
  EXPECT_EQ(plant.dialogs.rate.at(1), 2) << "the first tick of a second is not counted";

  plant.tables.ScreenPainted = plant.tables.Minimized = True;
  for (const auto& [label, tick] : {std::pair{2, &TxTimerTick}, {3, &GDITimerTick}}) {
    for (int round = 0; round < 3; ++round) tick(plant.engine);
    ++plant.system.second;
    tick(plant.engine);
    EXPECT_EQ(plant.dialogs.rate.at(label), 2) << "paced output and drawing too, also while the window is small";
  }

  CloseRefresh(plant.tables);
  plant.dialogs.rate.clear();
  ++plant.system.second;
  plant.Tick();
  EXPECT_TRUE(plant.dialogs.rate.empty());
}

class RecordingConfiguration : public Configuration {
 public:
  std::vector<int> actions;
  bool diskFull = false;
  void ReadDatabaseRights() override {}
  void CfgProc(int action, int) override {
    actions.push_back(action);
    if (diskFull) throw RunTimeError(ErrorNumber::DiskFull, "Disk full: /plant/TarvexSysSetup.Cfg");
  }
};

TEST(RefreshRatesTest, TheTimersRunAtNewRatesAtOnceButThePauseOfTheTxTimerStays) {
  TestPlant plant;
  RecordingConfiguration configuration;
  Engine engine = plant.EngineWith({.configuration = &configuration});
  plant.tables.TxTimerSleep = 7;
  UpdateRates(engine, {10, 3, 11, 99, 12, 4});
  EXPECT_EQ(plant.events.timer1.interval, 10);
  EXPECT_EQ(plant.events.txTimer.interval, 11);
  EXPECT_EQ(plant.events.gdiTimer.interval, 12);
  EXPECT_EQ(OpenRefresh(engine), (RateValues{10, 3, 11, 7, 12, 4}));
  EXPECT_THAT(configuration.actions, testing::ElementsAre(CfgAction::WriteSystemFile));

  configuration.diskFull = true;
  UpdateRates(engine, {20, 3, 11, 1, 12, 4});
  EXPECT_EQ(plant.tables.Timer1Interval, 20) << "new rates hold for this run";
  ASSERT_EQ(plant.notice.boxes.size(), 1U);
  EXPECT_THAT(plant.notice.boxes[0].text, testing::HasSubstr("/plant/TarvexSysSetup.Cfg"));
}

}  // namespace
