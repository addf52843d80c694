#include "app/text_screen/cells.h"

#include <gtest/gtest.h>

#include "app/text_screen/layout.h"
#include "core/tables.h"
#include "diagnostics/row_tone.h"

namespace {

class CellsTest : public testing::Test {
 protected:
  std::unique_ptr<Tables> store = std::make_unique<Tables>();
  Tables& tables = *store;
};

TEST_F(CellsTest, AWeightNeverLosesADigitAndACaptionItsDotsFirst) {
  const struct {
    const char* text;
    int item, width;
    Align align;
    const char* shown;
  } cases[] = {
      {"  12.5", Item::Gross, 8, Align::Right, "    12.5"},
      {"12345678", Item::NetWeight, 8, Align::Right, "12345678"},
      {"123456789", Item::NetWeight, 8, Align::Right, "########"},
      {"-0.0", Item::Tare, 3, Align::Right, "###"},
      {"Offline...", Item::StatusCaption, 10, Align::Left, "Offline..."},
      {"Offline...", Item::StatusCaption, 9, Align::Left, "Offline"},
  };
  for (const auto& c : cases) EXPECT_EQ(FitCell(c.text, c.item, {0, c.width, c.align}), c.shown) << c.text;
}

TEST_F(CellsTest, ARowTellsApartWeightsThatHoldNowAndThoseThatDoNot) {
  const struct {
    const char* caption;
    Boolean errorLamp;
    RowTone tone;
  } cases[] = {
      {"Online...", False, RowTone::Normal},
      {"OUT OF RANGE", True, RowTone::Fault},
      {"Offline...", False, RowTone::Fault},
      {"Initialization Error...", False, RowTone::Fault},
      {"Settings Lost...", False, RowTone::Fault},
      {"Ready...", False, RowTone::Waiting},
      {"Device Disabled...", False, RowTone::Disabled},
  };
  for (const auto& c : cases) {
    tables.ChanStatusText[0] = c.caption;
    tables.ChanIndicator[Item::Error][0] = c.errorLamp;
    EXPECT_EQ(ToneOf(tables, 0), c.tone) << c.caption;
    EXPECT_EQ(LookOf(tables, 0, Item::Gross) == Look::Strong, c.tone == RowTone::Normal) << c.caption;
  }
}

}  // namespace
