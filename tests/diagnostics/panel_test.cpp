#include "diagnostics/panel.h"

#include <gtest/gtest.h>

#include "core/tables.h"

namespace {

constexpr PanelButton kAllButtons[] = {PanelButton::PutInTray, PanelButton::End,    PanelButton::Refresh,
                                       PanelButton::Help,      PanelButton::Detail, PanelButton::Setup};

TEST(PanelTest, ButtonsLieWhereTheStoredFormPutsThemAndBesideTheirRows) {
  const struct {
    int width;
    PanelButton button;
    int row;
    CellPlace place;
  } cases[] = {
      {1024, PanelButton::Detail, 0, {845, 204, 75, 17}},  {1024, PanelButton::Setup, 31, {920, 204 + 16 * 31, 75, 17}},
      {1024, PanelButton::Refresh, 0, {845, 184, 75, 18}}, {1024, PanelButton::Help, 0, {921, 184, 74, 18}},
      {1024, PanelButton::PutInTray, 0, {925, 3, 47, 43}}, {1024, PanelButton::End, 0, {974, 3, 47, 43}},
      {800, PanelButton::Detail, 0, {657, 150, 60, 14}},   {800, PanelButton::Setup, 0, {717, 150, 60, 14}},
      {800, PanelButton::Refresh, 0, {657, 134, 60, 15}},  {800, PanelButton::End, 0, {761, 3, 38, 35}},
  };
  for (const auto& c : cases) EXPECT_EQ(ButtonPlace(LayoutFor(c.width), c.button, c.row), c.place);
  for (int ch = 0; ch < kChannels; ++ch) {
    const CellPlace button = ButtonPlace(LayoutFor(800), PanelButton::Detail, ch);
    const CellPlace row = PlaceOf(LayoutFor(800), ch, Item::Gross);
    EXPECT_LE(std::abs(button.y + button.height / 2 - (row.y + row.height / 2)), 3) << "row " << ch;
  }
}

TEST(PanelTest, ButtonsAreGreyUnderADialogBehindTheLastChannelAndInDebugModeTheTrays) {
  Tables tables;
  tables.MaxChannel = 7;
  for (PanelButton button : kAllButtons) {
    EXPECT_TRUE(ButtonEnabled(tables, false, button, 7));
    EXPECT_FALSE(ButtonEnabled(tables, true, button, 7));
  }
  EXPECT_FALSE(ButtonEnabled(tables, false, PanelButton::Detail, 8));
  EXPECT_FALSE(ButtonEnabled(tables, false, PanelButton::Setup, 8));
  tables.DebugMode = True;
  for (PanelButton button : kAllButtons) {
    EXPECT_EQ(ButtonEnabled(tables, false, button, 0), button != PanelButton::PutInTray);
  }
}

}  // namespace
