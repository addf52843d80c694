#include "diagnostics/panel.h"

#include <gtest/gtest.h>

#include "core/tables.h"

namespace {

constexpr PanelButton kAllButtons[] = {PanelButton::PutInTray, PanelButton::End,    PanelButton::Refresh,
                                       PanelButton::Help,      PanelButton::Detail, PanelButton::Setup};

TEST(PanelTest, ButtonsLieWhereTheStoredFormPutsThem) {
  const ScreenLayout& large = LayoutFor(1024);
  EXPECT_EQ(ButtonPlace(large, PanelButton::Detail, 0), (CellPlace{845, 204, 75, 17}));
  EXPECT_EQ(ButtonPlace(large, PanelButton::Setup, 31), (CellPlace{920, 204 + 16 * 31, 75, 17}));
  EXPECT_EQ(ButtonPlace(large, PanelButton::Refresh, 0), (CellPlace{845, 184, 75, 18}));
  EXPECT_EQ(ButtonPlace(large, PanelButton::Help, 0), (CellPlace{921, 184, 74, 18}));
  EXPECT_EQ(ButtonPlace(large, PanelButton::PutInTray, 0), (CellPlace{925, 3, 47, 43}));
  EXPECT_EQ(ButtonPlace(large, PanelButton::End, 0), (CellPlace{974, 3, 47, 43}));
}

TEST(PanelTest, TheSmallLayoutMovesTheButtons) {
  const ScreenLayout& small = LayoutFor(800);
  EXPECT_EQ(ButtonPlace(small, PanelButton::Detail, 0), (CellPlace{657, 150, 60, 14}));
  EXPECT_EQ(ButtonPlace(small, PanelButton::Setup, 0), (CellPlace{717, 150, 60, 14}));
  EXPECT_EQ(ButtonPlace(small, PanelButton::Refresh, 0), (CellPlace{657, 134, 60, 15}));
  EXPECT_EQ(ButtonPlace(small, PanelButton::End, 0), (CellPlace{761, 3, 38, 35}));
}

TEST(PanelTest, EveryRowButtonStandsBesideItsRow) {
  for (int width : {800, 1024}) {
    const ScreenLayout& layout = LayoutFor(width);
    for (int ch = 0; ch < kChannels; ++ch) {
      const CellPlace button = ButtonPlace(layout, PanelButton::Detail, ch);
      const CellPlace row = PlaceOf(layout, ch, Item::Gross);
      const int apart = button.y + button.height / 2 - (row.y + row.height / 2);
      EXPECT_LE(std::abs(apart), 3) << width << " row " << ch;
    }
  }
}

TEST(PanelTest, AnOpenDialogGreysEveryButton) {
  Tables tables;
  tables.MaxChannel = 31;
  for (PanelButton button : kAllButtons) {
    EXPECT_TRUE(ButtonEnabled(tables, false, button, 31));
    EXPECT_FALSE(ButtonEnabled(tables, true, button, 31));
  }
}

TEST(PanelTest, OnAnEightChannelSystemTheRowsBehindStayGrey) {
  Tables tables;
  tables.MaxChannel = 7;
  for (PanelButton button : {PanelButton::Detail, PanelButton::Setup}) {
    for (int row = 0; row < kChannels; ++row) {
      EXPECT_EQ(ButtonEnabled(tables, false, button, row), row < 8) << row;
    }
  }
}

TEST(PanelTest, InDebugModeTheTrayButtonAloneIsGrey) {
  Tables tables;
  tables.DebugMode = True;
  for (PanelButton button : kAllButtons) {
    EXPECT_EQ(ButtonEnabled(tables, false, button, 0), button != PanelButton::PutInTray);
  }
}

TEST(PanelTest, KeysWorkWithAnyModifierAndNotWithoutOne) {
  for (Modifiers held : {Modifiers{true, false, false}, {false, true, false}, {false, false, true}}) {
    EXPECT_EQ(ButtonForKey('M', held), PanelButton::PutInTray);
    EXPECT_EQ(ButtonForKey('X', held), PanelButton::End);
    EXPECT_EQ(ButtonForKey('R', held), std::nullopt);
  }
  EXPECT_EQ(ButtonForKey('M', {}), std::nullopt);
  EXPECT_EQ(ButtonForKey('X', {}), std::nullopt);
}

}  // namespace
