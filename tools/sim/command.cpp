#include "tools/sim/command.h"

#include <algorithm>
#include <charconv>

namespace sim {

namespace {

using Kind = Command::Kind;

constexpr std::size_t kLongest = 32;

struct Letter {
  std::string_view text;
  Kind kind;
};

constexpr Letter kLetters[] = {
    {"Z", Kind::Zero}, {"P", Kind::Print}, {"W", Kind::Weight}, {"T", Kind::Tare}, {"C", Kind::ClearTare},
};

/// The value in "K12.5A".
std::optional<double> PresetValue(std::string_view text) {
  if (text.size() < 3 || text.front() != 'K' || text.back() != 'A') return std::nullopt;
  text = text.substr(1, text.size() - 2);
  if (text.find_first_not_of("-.0123456789") != text.npos) return std::nullopt;
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return value;
}

}  // namespace

std::vector<Command> CommandReader::Take(std::string_view bytes) {
  std::vector<Command> commands;
  for (const char byte : bytes) {
    if (byte == '\r') {
      if (const auto command = Understand(text_)) commands.push_back(*command);
      text_.clear();
    } else if (byte >= ' ' && text_.size() <= kLongest) {
      text_ += byte;  // one character beyond the longest marks a text as too long
    }
  }
  return commands;
}

std::optional<Command> CommandReader::Understand(std::string_view text) {
  if (text.size() > kLongest) return std::nullopt;
  for (const Letter& letter : kLetters) {
    if (letter.text == text) return Command{letter.kind};
  }
  if (const auto value = PresetValue(text)) return Command{Kind::PresetTare, *value};
  return std::nullopt;
}

}  // namespace sim
