#include "diagnostics/cell_text.h"

#include "core/tables.h"
#include "protocol/number.h"

namespace {

constexpr int kHighestRepaintCount = 32000;

constexpr const ChannelTable<std::string> Tables::*kSources[] = {
    &Tables::ChanDeviceDesc, &Tables::ChanGross, &Tables::ChanTare, &Tables::ChanNet, &Tables::ChanStatusText};

}  // namespace

std::string_view TextOfCell(const Tables& tables, int ch, int item) {
  const std::string_view text = (tables.*kSources[item - Item::Description])[ch];
  if (item == Item::Tare && NumericValue(text) == 0) return {};
  return text;
}

std::string_view RepaintRate::Count(std::int64_t now) {
  if (now != second_) {
    text_ = FormatNumber(Decimal::FromDouble(repaints_), "000000").View();
    repaints_ = 0;
    second_ = now;
  } else if (++repaints_ > kHighestRepaintCount) {
    repaints_ = 0;
  }
  return text_;
}
