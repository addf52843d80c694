#include "tools/setup/line_frames.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <utility>

namespace {

constexpr std::int64_t kPauseMilliseconds = 60;
constexpr std::size_t kLongestFrame = 256;
constexpr char kEndOfText = 3;

/// Control characters that devices use in their frames: SOH STX ETX EOT ENQ ACK HT LF CR XON XOFF NAK ESC.
constexpr std::string_view kUsualControls = "\x01\x02\x03\x04\x05\x06\x09\x0A\x0D\x11\x13\x15\x1B";

bool IsReadable(char character) {
  const auto code = static_cast<unsigned char>(character);
  return (code >= ' ' && code < 127) || kUsualControls.find(character) != std::string_view::npos;
}

}  // namespace

std::vector<std::string> LineFrames::Take(const std::string& bytes, std::int64_t now) {
  std::vector<std::string> frames;
  const auto end = [&] {
    if (!open_.empty()) frames.push_back(std::exchange(open_, {}));
  };
  if (!open_.empty() && now - lastByte_ >= kPauseMilliseconds) end();
  if (!bytes.empty()) lastByte_ = now;
  for (char character : bytes) {
    if (open_.ends_with('\r') && character != '\n') end();
    open_ += character;
    if (character == '\n' || character == kEndOfText || open_.size() >= kLongestFrame) end();
  }
  return frames;
}

Cleanness CleannessOf(const std::vector<std::string>& frames) {
  Cleanness result{.frames = static_cast<int>(frames.size())};
  std::map<std::size_t, int> lengths;
  std::size_t characters = 0, readable = 0;
  for (const std::string& frame : frames) {
    ++lengths[frame.size()];
    characters += frame.size();
    readable += static_cast<std::size_t>(std::count_if(frame.begin(), frame.end(), IsReadable));
  }
  if (characters == 0) return result;
  const auto usual = std::max_element(lengths.begin(), lengths.end(),
                                      [](const auto& a, const auto& b) { return a.second < b.second; });
  result.usualLength = static_cast<int>(usual->first);
  result.ofUsualLength = static_cast<double>(usual->second) / static_cast<double>(frames.size());
  result.readable = static_cast<double>(readable) / static_cast<double>(characters);
  return result;
}
