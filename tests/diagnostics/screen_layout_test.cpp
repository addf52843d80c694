#include "diagnostics/screen_layout.h"

#include <gtest/gtest.h>

#include <set>

namespace {

TEST(ScreenLayoutTest, RowsOfTheLargeLayoutLieSixteenPixelsApartAndThoseOfTheSmallOneRiseEverySixChannels) {
  for (int ch = 0; ch < kChannels; ++ch) {
    for (int item = 0; item < Item::Count; ++item) EXPECT_EQ(PlaceOf(LayoutFor(1024), ch, item).y, 207 + 16 * ch);
    EXPECT_EQ(PlaceOf(LayoutFor(800), ch, Item::Gross).y, 149 + 13 * ch - ch / 6) << "channel " << ch;
  }
  EXPECT_EQ(PlaceOf(LayoutFor(1024), 0, Item::Gross), (CellPlace{320, 207, 85, 12}));
  EXPECT_EQ(PlaceOf(LayoutFor(1024), 31, Item::Error), (CellPlace{823, 703, 13, 12}));
}

TEST(ScreenLayoutTest, LampsOfTheSmallLayoutAreFittedByHand) {
  const ScreenLayout& layout = LayoutFor(800);
  const std::set<int> lowTraffic = {0, 1, 6};
  const std::set<int> highStatus = {11, 16, 17, 21, 22, 23, 26, 27, 28, 29, 31};
  for (int ch = 0; ch < kChannels; ++ch) {
    const int row = PlaceOf(layout, ch, Item::Gross).y;
    const int traffic = lowTraffic.contains(ch) ? 3 : 2;
    const int status = ch == 0 ? 2 : highStatus.contains(ch) ? 0 : 1;
    for (int item : {0, 1}) EXPECT_EQ(PlaceOf(layout, ch, item).y, row + traffic) << ch;
    for (int item : {2, 3, 4, 5, 6, 7}) EXPECT_EQ(PlaceOf(layout, ch, item).y, row + status) << ch;
    for (int item : {8, 9, 10, 11, 12}) EXPECT_EQ(PlaceOf(layout, ch, item).y, row) << ch;
  }
}

TEST(ScreenLayoutTest, TheLargestFactorAtWhichALayoutFitsGoesInEighths) {
  const struct {
    int layout, width, height;
    double factor;
  } cases[] = {{1024, 1024, 768, 1},      {1024, 800, 600, 1},      {1024, 1151, 863, 1},    {1024, 1152, 864, 1.125},
               {1024, 1920, 1080, 1.375}, {1024, 3840, 2160, 2.75}, {800, 1920, 1080, 1.75}, {1024, 0, 0, 1}};
  for (const auto& c : cases) EXPECT_EQ(LargestFactor(LayoutFor(c.layout), c.width, c.height), c.factor) << c.width;
}

}  // namespace
