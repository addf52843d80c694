#include "terminal/packets.h"

#include <cstdio>

#include "core/tables.h"

namespace {

constexpr int kFieldElements = 5;
constexpr std::size_t kElementWidth = 75;
constexpr std::size_t kTrailerWidth = 25;

}  // namespace

void BuildPacketField(Tables& tables, int ch, int field) {
  std::string& record = tables.PacketFieldBuffer;
  record.clear();
  const int first = tables.ChanPacketIndex[ch] + (field - 1) * kFieldElements;
  for (int element = first; element < first + kFieldElements; ++element) {
    record.append(tables.ChanDbRows[ch][element], 0, kElementWidth);
    record.resize(static_cast<std::size_t>(element - first + 1) * kElementWidth, ' ');
  }
  record.append(kTrailerWidth, '-');
}

std::string PacketNotice(std::int64_t records, std::int32_t elements) {
  char text[64];
  std::snprintf(text, sizeof text, "****:%05lld:%03d", static_cast<long long>(records), elements);
  return text;
}
