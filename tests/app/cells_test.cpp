#include "app/text_screen/cells.h"

#include <gtest/gtest.h>

#include "app/text_screen/layout.h"
#include "core/tables.h"

namespace {

class CellsTest : public testing::Test {
 protected:
  std::unique_ptr<Tables> store = std::make_unique<Tables>();
  Tables& tables = *store;
};

TEST_F(CellsTest, ALampIsALetterWhileItIsOnSoThatNobodyNeedsColours) {
  std::string on;
  std::string off;
  for (int item = Item::Rx; item <= Item::Error; ++item) {
    off += CellText(tables, 4, item);
    tables.ChanIndicator[item][4] = True;
    on += CellText(tables, 4, item);
  }
  EXPECT_EQ(on, "RTMNUES!");
  EXPECT_EQ(off, "........");
}

TEST_F(CellsTest, ATareIsBlankWhenItsNumberIsZero) {
  struct TareCase {
    const char* tare;
    const char* shown;
  };
  const TareCase cases[] = {{"0.00", ""}, {"abc", ""}, {"", ""}, {"   -0.0", ""}, {"0.05", "0.05"}, {"-4", "-4"}};
  for (const TareCase& each : cases) {
    tables.ChanTare[0] = each.tare;
    EXPECT_EQ(CellText(tables, 0, Item::Tare), each.shown) << each.tare;
  }
}

struct FitCase {
  const char* text;
  int item;
  int width;
  const char* shown;
};

TEST_F(CellsTest, AWeightNeverLosesADigit) {
  const FitCase cases[] = {
      {"  12.5", Item::Gross, 8, "    12.5"},
      {"12345678", Item::NetWeight, 8, "12345678"},
      {"123456789", Item::NetWeight, 8, "########"},
      {"-0.0", Item::Tare, 3, "###"},
  };
  for (const FitCase& each : cases) {
    EXPECT_EQ(FitCell(each.text, each.item, {0, each.width, Align::Right}), each.shown) << each.text;
  }
}

TEST_F(CellsTest, ACaptionLosesItsDotsBeforeItsLetters) {
  const FitCase cases[] = {
      {"Offline...", Item::StatusCaption, 10, "Offline..."},
      {"Offline...", Item::StatusCaption, 9, "Offline"},
  };
  for (const FitCase& each : cases) {
    EXPECT_EQ(FitCell(each.text, each.item, {0, each.width, Align::Left}), each.shown) << each.width;
  }
}

TEST_F(CellsTest, ARowTellsApartWeightsThatHoldNowAndThoseThatDoNot) {
  struct ToneCase {
    const char* caption;
    Boolean errorLamp;
    RowTone tone;
  };
  const ToneCase cases[] = {
      {"Online...", False, RowTone::Normal},
      {"OUT OF RANGE", True, RowTone::Fault},
      {"Offline...", True, RowTone::Fault},
      {"Offline...", False, RowTone::Fault},
      {"Initialization Error...", False, RowTone::Fault},
      {"Ready...", False, RowTone::Waiting},
      {"Device Disabled...", False, RowTone::Disabled},
      {"", False, RowTone::Disabled},
  };
  for (const ToneCase& each : cases) {
    tables.ChanStatusText[0] = each.caption;
    tables.ChanIndicator[Item::Error][0] = each.errorLamp;
    EXPECT_EQ(ToneOf(tables, 0), each.tone) << each.caption;
    const bool holds = LookOf(tables, 0, Item::Gross) == Look::Strong;
    EXPECT_EQ(holds, each.tone == RowTone::Normal) << each.caption;
  }
}

}  // namespace
