#include "core/tray.h"

#include <gmock/gmock.h>

#include "tests/support/test_plant.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class RecordingTray : public TrayArea {
 public:
  std::vector<std::string> steps;
  void AddIcon() override { steps.emplace_back("add"); }
  void RemoveIcon() override { steps.emplace_back("remove"); }
  void Animate(bool toTray) override { steps.emplace_back(toTray ? "to tray" : "from tray"); }
  void HideWindow() override { steps.emplace_back("hide"); }
  void ShowWindow() override { steps.emplace_back("show"); }
};

class TrayTest : public testing::Test {
 protected:
  std::string ActivityLog() { return plant.LogText(LogType::Activity); }

  TestPlant plant;
  RecordingTray tray;
};

TEST_F(TrayTest, GoingToTheTrayHidesTheWindowAndHoldsTheDrawing) {
  plant.tables.ScreenPainted = True;
  PutInTray(plant.engine, tray);
  EXPECT_THAT(tray.steps, ElementsAre("add", "to tray", "hide"));
  EXPECT_EQ(plant.tables.Minimized, True);
  EXPECT_EQ(plant.tables.ScreenPainted, False);
  EXPECT_THAT(ActivityLog(), HasSubstr(" @ Tarvex Manager Minimized\r\n"));
}

TEST_F(TrayTest, TheMenuRestoresWithALogLineAndWithoutAnimation) {
  plant.tables.Minimized = True;
  RestoreByMenu(plant.engine, tray);
  EXPECT_THAT(tray.steps, ElementsAre("remove", "show"));
  EXPECT_EQ(plant.tables.Minimized, False);
  EXPECT_THAT(ActivityLog(), HasSubstr(" @ Tarvex Manager Maximized\r\n"));
}

TEST_F(TrayTest, TheDoubleClickRestoresWithAnimationAndWithoutALogLine) {
  plant.tables.Minimized = True;
  plant.events.onDoEvents = [&] {
    EXPECT_EQ(plant.tables.Minimized, True) << "pending events run before it is cleared";
  };
  RestoreByDoubleClick(plant.engine, tray);
  EXPECT_THAT(tray.steps, ElementsAre("remove", "from tray", "show"));
  EXPECT_EQ(plant.tables.Minimized, False);
  EXPECT_EQ(ActivityLog(), "");
}

TEST_F(TrayTest, InDebugModeTheTrayIsNotUsed) {
  plant.tables.DebugMode = True;
  PutInTray(plant.engine, tray);
  RestoreByMenu(plant.engine, tray);
  EXPECT_THAT(tray.steps, IsEmpty());
  EXPECT_EQ(plant.tables.Minimized, False);
  EXPECT_EQ(ActivityLog(), "");
}

TEST_F(TrayTest, ALogThatCannotBeWrittenDoesNotKeepTheWindowUp) {
  plant.files.broken["/plant/" + LogFiles::FileName(LogType::Activity)] = ErrorNumber::DiskFull;
  PutInTray(plant.engine, tray);
  EXPECT_EQ(plant.tables.Minimized, True);
  EXPECT_THAT(tray.steps, ElementsAre("add", "to tray", "hide"));
}

}  // namespace
