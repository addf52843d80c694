#include "app/text_screen/layout.h"

#include <gtest/gtest.h>

#include "core/tables.h"

namespace {

const CellPlace& Cell(const ScreenLayout& layout, int item) { return layout.cell[static_cast<std::size_t>(item)]; }

TEST(LayoutTest, CellsStandSideBySideAndInsideEveryTerminalFromFortyColumnsOn) {
  for (int columns = kNarrowestScreen; columns <= 300; ++columns) {
    const ScreenLayout layout = LayoutFor(columns);
    int free = layout.number.column + layout.number.width;
    for (int item = 0; item < Item::Count; ++item) {
      const CellPlace& place = Cell(layout, item);
      if (place.width == 0) continue;
      EXPECT_GE(place.column, free) << "item " << item << " at " << columns << " columns";
      free = place.column + place.width;
    }
    EXPECT_LE(free, columns);
  }
}

TEST(LayoutTest, GrossNetAndTheShortCaptionsHaveRoomOnEveryTerminal) {
  for (const int columns : {kNarrowestScreen, 60, 80, 100, 132}) {
    const ScreenLayout layout = LayoutFor(columns);
    EXPECT_GE(Cell(layout, Item::Gross).width, 8) << columns;
    EXPECT_GE(Cell(layout, Item::NetWeight).width, 8) << columns;
    EXPECT_GE(Cell(layout, Item::StatusCaption).width, 7) << columns << ": Offline";
  }
}

TEST(LayoutTest, ACaptionOfAFaultFitsFromEightyColumnsOn) {
  for (const int columns : {80, 99, 100, 131, 132}) {
    EXPECT_GE(Cell(LayoutFor(columns), Item::StatusCaption).width, 20) << columns << ": Initialization Error";
  }
}

}  // namespace
