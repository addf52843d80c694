#include "core/framing.h"

#include <string>

#include "core/setting_limits.h"
#include "core/tables.h"

namespace {

constexpr int kDefaultMaxStream = 48;
constexpr int kDefaultTerminator = 10;

/// Appends the chunk; overflow loses the oldest input.
void AppendKeepingTail(std::string& buffer, const std::string& chunk, std::size_t most) {
  if (chunk.size() >= most) {
    buffer.assign(chunk, chunk.size() - most, most);
    return;
  }
  const std::size_t total = buffer.size() + chunk.size();
  if (total > most) buffer.erase(0, total - most);
  buffer.append(chunk);
}

/// Whether a chunk ends a stream: a terminator behind another one ends nothing. `before` is the last character in front
/// of the chunk, a terminator if there is none.
bool EndsAStream(char before, const std::string& chunk, char terminator) {
  for (const char character : chunk) {
    if (character == terminator && before != terminator) return true;
    before = character;
  }
  return false;
}

}  // namespace

Cut CutStream(Tables& tables, int ch) {
  const int proto = tables.ChanProtocol[ch];
  std::string& buffer = tables.ChanRxBuffer[ch];
  std::string& stream = tables.ChanStream[ch];

  if (tables.ProtoMaxStream[proto] == 0) tables.ProtoMaxStream[proto] = kDefaultMaxStream;
  const std::int32_t length = tables.ProtoMaxStream[proto];
  const bool possible = length > 0 && length <= kLongestStream;
  const std::size_t most = static_cast<std::size_t>(possible ? length : kDefaultMaxStream);
  if (tables.ProtoTerminator[proto] == 0) tables.ProtoTerminator[proto] = kDefaultTerminator;
  const char end = static_cast<char>(tables.ProtoTerminator[proto]);
  const bool ends = EndsAStream(buffer.empty() ? end : buffer.back(), tables.ChanRxChunk[ch], end);
  AppendKeepingTail(buffer, tables.ChanRxChunk[ch], most);
  if (tables.ProtoTerminator[proto] < 0 || tables.ProtoTerminator[proto] > 255) return Cut::None;  // is no character
  const char terminator = static_cast<char>(tables.ProtoTerminator[proto]);
  const std::size_t first = buffer.find(terminator);
  if (first == std::string::npos) return Cut::None;
  const Cut cut = ends ? Cut::Fresh : Cut::Again;

  const std::size_t second = buffer.find(terminator, first + 1);
  if (second != std::string::npos) {
    stream.assign(buffer, first + 1, second - first);
    return cut;
  }
  stream.assign(buffer, 0, first + 1);
  const int startChar = tables.ProtoStartChar[proto];
  const bool keep = startChar > 0 && static_cast<unsigned char>(buffer.front()) == startChar;
  if (!keep) buffer.clear();
  return cut;
}

void ReplaceFirstCarriageReturn(std::string& stream) {
  const std::size_t at = stream.find('\r');
  if (at != std::string::npos) stream[at] = ' ';
}
