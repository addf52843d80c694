#include "core/gdi_timer.h"

#include <gtest/gtest.h>

#include <utility>

#include "tests/support/test_plant.h"

namespace {

class RecordingScreen : public HeadlessMainForm {
 public:
  std::vector<std::pair<int, int>> drawn;
  void DrawItem(int ch, int item) override { drawn.emplace_back(ch, item); }
};

class RecordingRates : public HeadlessDialogs {
 public:
  std::vector<std::pair<int, int>> shown;
  void ShowRate(int label, int ticksPerSecond) override { shown.emplace_back(label, ticksPerSecond); }
};

/// A plant of three channels whose screen and rate labels are looked at.
class GDITimerTickTest : public testing::Test {
 protected:
  GDITimerTickTest() {
    plant.tables.MaxChannel = 2;
    plant.tables.ScreenPainted = True;
    plant.tables.GDITimerSleep = 1;
  }

  TestPlant plant;
  RecordingScreen screen;
  RecordingRates rates;
  Engine engine{plant.engine.tables,
                plant.engine.system,
                plant.engine.events,
                plant.engine.ports,
                plant.engine.files,
                plant.engine.notice,
                plant.engine.log,
                plant.engine.configuration,
                plant.engine.publisher,
                plant.engine.terminal,
                plant.engine.startupForm,
                screen,
                rates};
};

TEST_F(GDITimerTickTest, DrawsTheCellsOfEachChannelInOrderAndSleepsBehindEachChannel) {
  GDITimerTick(engine);
  ASSERT_EQ(screen.drawn.size(), 39u);
  for (int cell = 0; cell < 39; ++cell) {
    EXPECT_EQ(screen.drawn[static_cast<std::size_t>(cell)], std::pair(cell / 13, cell % 13));
  }
  EXPECT_EQ(plant.system.sleeps, 3);
}

TEST_F(GDITimerTickTest, DrawsNothingBeforeTheWindowWasPaintedOrWithoutDrawing) {
  plant.tables.RefreshOpen = True;
  for (Boolean* condition : {&plant.tables.ScreenPainted, &plant.tables.GdiEnabled}) {
    *condition = False;
    GDITimerTick(engine);
    *condition = True;
  }
  EXPECT_TRUE(screen.drawn.empty());
  EXPECT_TRUE(rates.shown.empty());
  EXPECT_EQ(plant.system.sleeps, 0);
}

TEST_F(GDITimerTickTest, InTheTraySleepsOnceAndDrawsNothing) {
  plant.tables.Minimized = True;
  GDITimerTick(engine);
  EXPECT_TRUE(screen.drawn.empty());
  EXPECT_EQ(plant.system.sleeps, 1);
  plant.tables.GDITimerSleep = 0;
  GDITimerTick(engine);
  EXPECT_EQ(plant.system.sleeps, 1);
}

TEST_F(GDITimerTickTest, ShowsItsRateOnceASecondWhileTheRefreshDialogIsOpen) {
  plant.tables.RefreshOpen = True;
  GDITimerTick(engine);
  rates.shown.clear();
  for (int tick = 0; tick < 4; ++tick) GDITimerTick(engine);
  EXPECT_TRUE(rates.shown.empty());
  ++plant.system.second;
  GDITimerTick(engine);
  EXPECT_EQ(rates.shown, (std::vector<std::pair<int, int>>{{3, 4}}));
}

TEST_F(GDITimerTickTest, DoesNotCountWhileTheRefreshDialogIsClosed) {
  GDITimerTick(engine);
  EXPECT_EQ(plant.tables.GDIRate, 0);
  EXPECT_TRUE(rates.shown.empty());
}

}  // namespace
