#include "publish/device_text.h"

#include "platform/run_time_error.h"
#include "protocol/number.h"

namespace {

constexpr int kCarriageReturnLineFeed = 1310;

std::string CharacterOf(int code, std::string_view role) {
  if (code <= 0) return {};
  if (code > 255) {
    throw RunTimeError(ErrorNumber::InvalidCall, "Invalid procedure call: command " + std::string(role) + " " +
                                                     std::to_string(code) + " is not a character code");
  }
  return std::string(1, static_cast<char>(code));
}

/// Last position of the field, from 1. The walk stops one position early where the definition ends in "~", so
/// that this last "~" is not part of the field, and gives 0 where it is the only one.
std::size_t EndOfField(std::string_view definition) {
  std::size_t counter = 1;
  for (;;) {
    const std::size_t at = definition.find('~', counter - 1);
    if (at == std::string_view::npos || at + 1 == definition.size()) return counter - 1;
    ++counter;
  }
}

std::string LastCharacters(std::string_view text, std::size_t width) {
  return std::string(text.size() > width ? text.substr(text.size() - width) : text);
}

std::string FieldValue(double parameter, std::size_t width) {
  const Decimal number = Decimal::FromDouble(parameter);
  const NumberText general = GeneralText(number);
  const std::size_t point = general.View().find('.');
  if (point == std::string_view::npos) return LastCharacters(general.View(), width);
  const std::size_t places = general.View().size() - point - 1;
  const std::string mask = LastCharacters(std::string(width, '#') + "." + std::string(places, '#'), width);
  return LastCharacters(FormatNumber(Decimal::FromText(general.View()), mask).View(), width);
}

}  // namespace

DeviceText BuildDeviceText(std::string_view definition, double parameter, int startChar, int terminator) {
  const std::string prefix = CharacterOf(startChar, "starting character");
  const std::string suffix =
      terminator == kCarriageReturnLineFeed ? "\r\n" : CharacterOf(terminator, "terminator character");
  const std::size_t first = definition.find('~');
  if (first == std::string_view::npos) {
    return {DeviceTextForm::Plain, prefix + std::string(definition) + suffix, {}};
  }
  const std::string left = prefix + std::string(definition.substr(0, first));
  const std::size_t end = EndOfField(definition);
  if (end == 0) {
    std::string value = FieldValue(parameter, 1);
    return {DeviceTextForm::Narrow, left + value + suffix, value};
  }
  std::string value = FieldValue(parameter, end - first);
  return {DeviceTextForm::Wide, left + value + std::string(definition.substr(end)) + suffix, value};
}
