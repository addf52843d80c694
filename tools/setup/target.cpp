#include <charconv>
#include <optional>

#include "core/setting_limits.h"
#include "tools/setup/verbs.h"

namespace {

std::optional<int> Number(const std::string& text) {
  int number = 0;
  const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (fault != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

std::string TakeWord(Words& words) {
  if (words.empty()) return {};
  std::string word = words.front();
  words.erase(words.begin());
  return word;
}

}  // namespace

Target TakeTarget(Words& words) {
  if (words.empty()) return {};
  std::string word = TakeWord(words);
  if (word == "all") return {};
  const bool protocol = word == "protocol";
  if (protocol || word == "channel") word = TakeWord(words);
  const auto number = Number(word);
  if (protocol) {
    if (!number || *number < 0 || *number > kLastProtocol) {
      throw SetupToolFault("protocol \"" + word + "\": there are 0 to " + std::to_string(kLastProtocol));
    }
    return {Target::Kind::Protocol, *number};
  }
  if (!number || *number < 1 || *number > kChannels) {
    throw SetupToolFault("channel \"" + word + "\": there are 1 to " + std::to_string(kChannels));
  }
  return {Target::Kind::Channel, *number - 1};
}
