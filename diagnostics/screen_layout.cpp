#include "diagnostics/screen_layout.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>

namespace {

constexpr int kLampColumn = 0;  // takes the width of the lamp cell

constexpr ScreenLayout kLayout800 = {
    .width = 800,
    .height = 600,
    .rightTextX = 45,
    .textY = 2,
    .ellipseWidth = 9,
    .ellipseHeight = 9,
    .rowPitch = 13,
    .cellHeight = 13,
    .firstRowY = 150,
    .lampCellWidth = 13,
    .fontHeight = 12,
    .fontWidth = 5,
    .handFitted = true,
    .columns = {{{44, kLampColumn},
                 {57, kLampColumn},
                 {575, kLampColumn},
                 {588, kLampColumn},
                 {601, kLampColumn},
                 {614, kLampColumn},
                 {628, kLampColumn},
                 {640, kLampColumn},
                 {124, 200},
                 {285, 45},
                 {341, 45},
                 {396, 45},
                 {452, 90}}},
};

constexpr ScreenLayout kLayout1024 = {
    .width = 1024,
    .height = 768,
    .rightTextX = 80,
    .textY = -3,
    .ellipseWidth = 11,
    .ellipseHeight = 12,
    .rowPitch = 16,
    .cellHeight = 12,
    .firstRowY = 207,
    .lampCellWidth = 13,
    .fontHeight = 16,
    .fontWidth = 7,
    .handFitted = false,
    .columns = {{{31, kLampColumn},
                 {47, kLampColumn},
                 {741, kLampColumn},
                 {757, kLampColumn},
                 {774, kLampColumn},
                 {790, kLampColumn},
                 {807, kLampColumn},
                 {823, kLampColumn},
                 {126, 200},
                 {320, 85},
                 {400, 85},
                 {480, 85},
                 {600, 130}}},
};

using ChannelSet = std::uint32_t;

constexpr ChannelSet Channels(std::initializer_list<int> channels) {
  ChannelSet set = 0;
  for (int ch : channels) set |= ChannelSet{1} << ch;
  return set;
}

constexpr ChannelSet kEveryChannel = ~ChannelSet{0};

struct RowCorrection {
  int firstItem, lastItem;
  ChannelSet channels;
  int pixels;
};

/// Fitted by hand to the picture of the 800 layout. The first row that holds item and channel counts; items of no
/// row stay where they are.
constexpr RowCorrection kCorrections[] = {
    {Item::Rx, Item::Tx, Channels({0, 1, 6}), 3},
    {Item::Rx, Item::Tx, kEveryChannel, 2},
    {Item::Motion, Item::Error, Channels({0}), 2},
    {Item::Motion, Item::Error, Channels({11, 16, 17, 21, 22, 23, 26, 27, 28, 29, 31}), 0},
    {Item::Motion, Item::Error, kEveryChannel, 1},
};

/// Channels 0 to 5 lie a pixel higher than the pitch says, and each further group of six one more.
constexpr int kChannelsInGroup = 6;

int HandFitted(int ch, int item) {
  const int lowered = ch / kChannelsInGroup + 1;
  for (const RowCorrection& row : kCorrections) {
    const bool here = item >= row.firstItem && item <= row.lastItem && (row.channels >> ch & 1) != 0;
    if (here) return row.pixels - lowered;
  }
  return -lowered;
}

}  // namespace

const ScreenLayout& LayoutFor(int screenWidth) { return screenWidth == kLayout800.width ? kLayout800 : kLayout1024; }

double LargestFactor(const ScreenLayout& layout, int width, int height) {
  constexpr int kSteps = 8;
  const int steps = std::min(kSteps * width / layout.width, kSteps * height / layout.height);
  return std::max(steps, kSteps) / static_cast<double>(kSteps);
}

CellPlace PlaceOf(const ScreenLayout& layout, int ch, int item) {
  if (ch < 0 || ch >= kChannels || item < 0 || item >= Item::Count) RaiseSubscriptOutOfRange();
  const ItemColumn& column = layout.columns[static_cast<std::size_t>(item)];
  const int fitted = layout.handFitted ? HandFitted(ch, item) : 0;
  return {column.x, layout.rowPitch * ch + layout.firstRowY + fitted,
          IsLamp(item) ? layout.lampCellWidth : column.width, layout.cellHeight};
}
