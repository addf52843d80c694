#include "app/text_screen/layout.h"

#include <gtest/gtest.h>

#include "core/tables.h"

namespace {

TEST(LayoutTest, OnEveryTerminalCellsStandSideBySideAndWeightsAndCaptionsHaveRoom) {
  for (int columns = kNarrowestScreen; columns <= 300; ++columns) {
    SCOPED_TRACE(columns);
    const TextLayout layout = TextLayoutFor(columns);
    const auto cell = [&](int item) { return layout.cell[static_cast<std::size_t>(item)]; };
    int free = layout.number.column + layout.number.width;
    for (int item = 0; item < Item::Count; ++item) {
      if (cell(item).width == 0) continue;
      EXPECT_GE(cell(item).column, free) << "item " << item;
      free = cell(item).column + cell(item).width;
    }
    EXPECT_LE(free, columns);
    EXPECT_GE(cell(Item::Gross).width, 8);
    EXPECT_GE(cell(Item::NetWeight).width, 8);
    EXPECT_GE(cell(Item::StatusCaption).width, columns < 80 ? 7 : 20) << "Offline, and Initialization Error";
  }
}

}  // namespace
