#pragma once

#include <array>
#include <string_view>

/// Columns of the weigh screen as text, by the width of the terminal.

enum class Align { Left, Right };

/// Place of one cell of a row. A width of 0 means that the column is left out on a terminal this narrow.
struct TextCell {
  int column = 0;
  int width = 0;
  Align align = Align::Left;
};

/// Narrowest terminal that a row fits on.
inline constexpr int kNarrowestScreen = 40;

struct TextLayout {
  TextCell number;                ///< the channel's display number
  std::array<TextCell, 13> cell;  ///< by `Item`
};

/// The layout for a terminal `columns` wide; the caption takes what the other cells leave.
TextLayout TextLayoutFor(int columns);

/// Title above a cell, by `Item`.
std::string_view ColumnTitle(int item);
