#include "app/text_screen/layout.h"

#include <algorithm>

#include "core/tables.h"

namespace {

/// Widths in columns; 0 leaves the column out.
struct Widths {
  int terminal;  ///< from this width on
  int lampPitch;
  int description;
  int weight;
  int tare;
  int gap;
};

/// Twenty columns hold the longest caption of a fault without its dots, and is what 80 columns leave for it.
constexpr Widths kWidths[] = {
    {132, 2, 36, 12, 12, 2}, {100, 1, 24, 10, 10, 2},           {80, 1, 19, 8, 8, 1},
    {60, 1, 10, 8, 8, 1},    {kNarrowestScreen, 1, 0, 8, 0, 1},
};

constexpr std::array<std::string_view, Item::Count> kTitles = {"R", "T",      "M",     "N",    "U",   "E",     "S",
                                                               "!", "Device", "Gross", "Tare", "Net", "Status"};

const Widths& WidthsFor(int columns) {
  const auto* fitting =
      std::find_if(std::begin(kWidths), std::end(kWidths), [&](const Widths& row) { return columns >= row.terminal; });
  return fitting == std::end(kWidths) ? *std::prev(fitting) : *fitting;
}

}  // namespace

TextLayout TextLayoutFor(int columns) {
  const Widths& widths = WidthsFor(columns);
  TextLayout layout;
  layout.number = {1, 2, Align::Right};
  int column = 4;
  for (int lamp = Item::Rx; lamp <= Item::Error; ++lamp) {
    layout.cell[static_cast<std::size_t>(lamp)] = {column, 1, Align::Left};
    column += widths.lampPitch;
  }
  column = layout.cell[Item::Error].column + 1 + widths.gap;
  const auto place = [&](int item, int width, Align align) {
    layout.cell[static_cast<std::size_t>(item)] = {column, width, align};
    if (width > 0) column += width + widths.gap;
  };
  place(Item::Description, widths.description, Align::Left);
  place(Item::Gross, widths.weight, Align::Right);
  place(Item::Tare, widths.tare, Align::Right);
  place(Item::NetWeight, widths.weight, Align::Right);
  place(Item::StatusCaption, std::max(0, columns - column), Align::Left);
  return layout;
}

std::string_view ColumnTitle(int item) { return kTitles[static_cast<std::size_t>(item)]; }
