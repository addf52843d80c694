#include "app/text_screen/row_printer.h"

#include "app/text_screen/cells.h"
#include "core/fixed_tables.h"
#include "platform/curses/display_text.h"

std::string RowPrinter::Lines() {
  if (tables_.ChannelsInitialised == False) return {};
  if (!rate_.Update(tables_.StreamsDecoded, system_.WallSeconds())) return {};
  std::string lines = system_.DateTimeText() + "  " + CountText(CountChannels(tables_), rate_.PerSecond()) + "\n";
  const ChannelSet shown = ShownChannels(tables_, false);
  for (int ch = 0; ch <= tables_.MaxChannel; ++ch) {
    if (shown[static_cast<std::size_t>(ch)]) lines += Line(ch);
  }
  return lines;
}

std::string RowPrinter::Line(int ch) const {
  std::string line = DisplayNumber(ch);
  for (int item = 0; item < Item::Count; ++item) {
    const TextCell& place = layout_.cell[static_cast<std::size_t>(item)];
    const std::string text = FitCell(CellText(tables_, ch, item), item, place);
    line = DisplayLine(line, place.column) + DisplayLine(text, place.width);
  }
  return line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
}
