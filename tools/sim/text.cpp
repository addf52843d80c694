#include "tools/sim/text.h"

#include <charconv>
#include <cmath>

namespace sim {

namespace {

constexpr std::string_view kBlanks = " \t\r";

template <typename Value>
std::optional<Value> Read(std::string_view text) {
  Value value{};
  const char* const last = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), last, value);
  if (error != std::errc{} || end != last) return std::nullopt;
  return value;
}

}  // namespace

std::string_view Strip(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::vector<std::string_view> Words(std::string_view text) {
  std::vector<std::string_view> words;
  for (text = Strip(text); !text.empty(); text = Strip(text)) {
    words.push_back(text.substr(0, text.find_first_of(kBlanks)));
    text.remove_prefix(words.back().size());
  }
  return words;
}

std::vector<std::string_view> Pieces(std::string_view text, char separator) {
  std::vector<std::string_view> pieces;
  for (;;) {
    const std::size_t at = text.find(separator);
    pieces.push_back(Strip(text.substr(0, at)));
    if (at == text.npos) return pieces;
    text.remove_prefix(at + 1);
  }
}

std::optional<double> Number(std::string_view text) {
  const std::optional<double> value = Read<double>(text);
  return value && std::isfinite(*value) ? value : std::nullopt;
}

std::optional<int> WholeNumber(std::string_view text) { return Read<int>(text); }

std::optional<double> Seconds(std::string_view text) {
  if (text.ends_with('s')) text.remove_suffix(1);
  const std::optional<double> seconds = Number(text);
  return seconds && *seconds >= 0 ? seconds : std::nullopt;
}

}  // namespace sim
