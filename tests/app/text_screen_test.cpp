#include "app/text_screen/text_screen.h"

#include <gtest/gtest.h>

#include "core/gdi_timer.h"
#include "tests/app/memory_screen.h"
#include "tests/support/test_plant.h"

namespace {

class TextScreenTest : public testing::Test {
 protected:
  TextScreenTest() {
    form.screen = &screen;
    tables.ScreenPainted = True;
    for (int ch = 0; ch < 3; ++ch) Open(ch);
    Tick();
  }

  void Open(int ch) {
    plant.Connect(ch, 2);
    tables.ChanStatusText[ch] = "Online...";
    tables.ChanDeviceDesc[ch] = "Scale " + std::to_string(ch + 1);
    tables.ChanDirty[Item::StatusCaption][ch] = tables.ChanDirty[Item::Description][ch] = True;
  }
  void Tick() {
    screen.Serve();
    GDITimerTick(engine);
  }
  void Press(int key) {
    terminal.keys.push_back(key);
    Tick();
  }
  bool Shows(std::string_view text) const { return terminal.Screen().find(text) != std::string::npos; }

  TestPlant plant;
  Tables& tables = plant.tables;
  MemoryTerminal terminal{24, 80};
  int quits = 0;
  TextScreen screen{tables, plant.system, terminal, "plant-7", [this] { ++quits; }};
  ScreenForm form;
  Engine engine = plant.EngineWith({.mainForm = &form});
};

TEST_F(TextScreenTest, ACellIsWrittenOnlyWhenItIsFlaggedOnAPaintedScreen) {
  Tick();
  terminal.puts = 0;
  Tick();
  EXPECT_EQ(terminal.puts, 0);

  tables.ChanGross[1] = "99.5";
  Tick();
  EXPECT_FALSE(Shows("99.5")) << "a change without a flag is not for the screen";
  tables.ChanDirty[Item::Gross][1] = True;
  tables.ScreenPainted = False;
  Tick();
  EXPECT_FALSE(Shows("99.5"));
  EXPECT_EQ(tables.ChanDirty[Item::Gross][1], True);
  tables.ScreenPainted = True;
  Tick();
  EXPECT_TRUE(Shows("99.5"));
  EXPECT_EQ(tables.ChanDirty[Item::Gross][1], False);
}

TEST_F(TextScreenTest, ARowIsShownForEachChannelThatIsEnabledOrHasFailedAndAllRowsOnRequest) {
  EXPECT_FALSE(Shows("Scale 9"));
  Open(8);
  Open(9);
  tables.ChanEnabled[9] = False;
  tables.ChanStatusText[9] = Caption::InitializationError;
  Tick();
  EXPECT_TRUE(Shows("Scale 9"));
  EXPECT_TRUE(Shows("Scale 10"));
  EXPECT_FALSE(Shows(" 19 ."));
  Press('a');
  EXPECT_TRUE(Shows(" 19 ."));
  Press('a');
  EXPECT_FALSE(Shows(" 19 ."));
}

TEST_F(TextScreenTest, ATerminalWithFewerLinesThanChannelsScrollsAndAGrownOneLeavesNoGap) {
  for (int ch = 0; ch < 32; ++ch) Open(ch);
  terminal.Resize(10, 80);
  Tick();
  EXPECT_TRUE(Shows("Scale 6 "));
  EXPECT_FALSE(Shows("Scale 7 "));
  EXPECT_TRUE(Shows("1-6 of 32"));
  Press(Key::PageDown);
  EXPECT_TRUE(Shows("Scale 7 "));
  Press(Key::End);
  EXPECT_TRUE(Shows("Scale 32"));
  Press(Key::Up);
  EXPECT_FALSE(Shows("Scale 32"));
  Press(Key::End);
  for (const auto& [rows, columns] : {std::pair{1, 1}, {5, 20}, {43, 132}}) {
    terminal.Resize(rows, columns);
    Tick();
  }
  EXPECT_TRUE(Shows("Scale 1 "));
  EXPECT_TRUE(Shows("Scale 32"));
}

TEST_F(TextScreenTest, TheProgramEndsOnlyAfterAYesButAtOnceOnCtrlC) {
  Press('q');
  EXPECT_TRUE(Shows("Shut Off Tarvex Manager?"));
  Press('n');
  EXPECT_FALSE(Shows("Shut Off Tarvex Manager?"));
  EXPECT_EQ(quits, 0);
  Press('q');
  Press('y');
  EXPECT_EQ(quits, 1);
  Press(Key::Interrupt);
  EXPECT_EQ(quits, 2);
}

}  // namespace
