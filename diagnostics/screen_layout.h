#pragma once

#include <array>

#include "core/tables.h"

/// One cell of the weigh screen, in pixels of the background picture.
struct CellPlace {
  int x, y, width, height;
  friend bool operator==(const CellPlace&, const CellPlace&) = default;
};

/// Column of an item; a lamp's width is the lamp cell's.
struct ItemColumn {
  int x, width;
};

/// One of the two fixed layouts of the weigh screen.
struct ScreenLayout {
  int width, height;                ///< of the window
  int rightTextX, textY;            ///< inside a cell
  int ellipseWidth, ellipseHeight;  ///< right and bottom edge of a lamp inside its cell
  int rowPitch, cellHeight, firstRowY, lampCellWidth;
  int fontHeight, fontWidth;
  bool handFitted;  ///< the picture's rows are not evenly spaced
  std::array<ItemColumn, Item::Count> columns;
};

/// The layout of a display 800 wide, or the one of 1024 x 768, which serves every other width.
const ScreenLayout& LayoutFor(int screenWidth);

/// The largest factor, in steps of an eighth, at which the layout fits into `width` by `height` pixels; 1 at least.
double LargestFactor(const ScreenLayout& layout, int width, int height);

/// Where the cell of an item lies. `ch` 0 to 31, `item` 0 to 12; raises 9 outside.
CellPlace PlaceOf(const ScreenLayout& layout, int ch, int item);
