#include "diagnostics/refresh_rates.h"

#include <gmock/gmock.h>

#include "tests/support/test_plant.h"

namespace {

struct SliderCase {
  RateValues values;
  int position;
};

TEST(RefreshRatesTest, TheSliderStandsWhereScanAndDrawingPutIt) {
  const SliderCase cases[] = {
      {{19, 1, 15, 1, 19, 1}, 0},     {{20, 1, 15, 1, 19, 1}, 1}, {{19, 2, 15, 1, 19, 1}, 1},
      {{19, 1, 15, 1, 20, 1}, 1},     {{19, 1, 15, 1, 19, 2}, 1}, {{39, 3, 15, 1, 39, 3}, 1},
      {{40, 1, 15, 1, 1, 1}, 2},      {{1, 4, 15, 1, 1, 1}, 2},   {{1, 1, 15, 1, 40, 1}, 2},
      {{1, 1, 15, 1, 1, 4}, 2},       {{25, 2, 15, 0, 25, 1}, 1},  // as delivered
      {{1, 0, 60000, 1000, 1, 0}, 0},                              // the Tx column has no say
  };
  for (const SliderCase& c : cases) EXPECT_EQ(SliderPosition(c.values), c.position);
}

TEST(RefreshRatesTest, EachPositionPutsValuesIntoTheBoxesThatBelongToIt) {
  EXPECT_EQ(SliderValues(0), (RateValues{1, 0, 15, 1, 15, 0}));
  EXPECT_EQ(SliderValues(1), (RateValues{25, 1, 15, 1, 25, 1}));
  EXPECT_EQ(SliderValues(2), (RateValues{50, 5, 15, 1, 50, 5}));
  for (int position = 0; position < kSliderPositions; ++position) {
    EXPECT_EQ(SliderPosition(SliderValues(position)), position);
  }
  EXPECT_THROW(SliderValues(kSliderPositions), RunTimeError);
}

struct TypedCase {
  int box;
  std::string_view text;
  int value;
};

TEST(RefreshRatesTest, WhatIsTypedCannotStopTheSystem) {
  const TypedCase cases[] = {
      {0, "30", 30},  {0, "0", 1},  {0, "-5", 1}, {0, "60001", 60000}, {0, "99999999999", 60000}, {0, "", 77},
      {0, "12x", 77}, {0, "x", 77}, {1, "0", 0},  {1, "1001", 1000},   {1, "-99999999999", 0},    {5, "1.5", 77},
      {4, "15", 15},  {2, "0", 1},
  };
  for (const TypedCase& c : cases)
    EXPECT_EQ(RateFromText(c.box, c.text, 77), c.value) << c.box << " '" << c.text << "'";
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
  void CfgProc(int action, int) override {
    actions.push_back(action);
    if (diskFull) throw RunTimeError(ErrorNumber::DiskFull, "Disk full: /plant/TarvexSysSetup.Cfg");
  }
};

class UpdateRatesTest : public testing::Test {
 protected:
  TestPlant plant;
  RecordingConfiguration configuration;
  Engine engine{
      plant.tables,     plant.system,  plant.events,           plant.ports,           plant.files,       plant.notice,
      plant.engine.log, configuration, plant.engine.publisher, plant.engine.terminal, plant.startupForm, plant.mainForm,
      plant.dialogs};
};

TEST_F(UpdateRatesTest, TheTimersRunAtTheirNewIntervalsAtOnceAndTheSystemFileIsSaved) {
  UpdateRates(engine, {10, 3, 11, 99, 12, 4});
  EXPECT_EQ(plant.events.timer1.interval, 10);
  EXPECT_EQ(plant.events.txTimer.interval, 11);
  EXPECT_EQ(plant.events.gdiTimer.interval, 12);
  const Tables& tables = plant.tables;
  EXPECT_THAT((std::array{tables.Timer1Interval, tables.Timer1Sleep, tables.TxTimerInterval, tables.GDITimerInterval,
                          tables.GDITimerSleep}),
              testing::ElementsAre(10, 3, 11, 12, 4));
  EXPECT_THAT(configuration.actions, testing::ElementsAre(CfgAction::WriteSystemFile));
}

TEST_F(UpdateRatesTest, ThePauseOfTheTxTimerStaysAsItWasWhateverItsBoxShows) {
  plant.tables.TxTimerSleep = 7;
  UpdateRates(engine, {10, 3, 11, 99, 12, 4});
  EXPECT_EQ(plant.tables.TxTimerSleep, 7);
  EXPECT_EQ(OpenRefresh(engine)[3], 7);
}

TEST_F(UpdateRatesTest, AFileThatCannotBeWrittenIsToldAndTheNewRatesHoldForThisRun) {
  configuration.diskFull = true;
  UpdateRates(engine, {10, 3, 11, 1, 12, 4});
  EXPECT_EQ(plant.tables.Timer1Interval, 10);
  ASSERT_EQ(plant.notice.boxes.size(), 1U);
  EXPECT_THAT(plant.notice.boxes[0].text, testing::HasSubstr("/plant/TarvexSysSetup.Cfg"));
}

}  // namespace
