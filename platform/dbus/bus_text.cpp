#include "platform/dbus/bus_text.h"

#include <algorithm>

#include "platform/qt/text.h"

namespace {

/// The first `kLongestText` characters of a valid UTF-8 text.
std::string_view Beginning(std::string_view text) {
  int characters = 0;
  for (std::size_t byte = 0; byte < text.size(); ++byte) {
    const bool first = (static_cast<unsigned char>(text[byte]) & 0xC0U) != 0x80;
    if (first && ++characters > kLongestText) return text.substr(0, byte);
  }
  return text;
}

}  // namespace

std::string BusText(std::string_view bytes) {
  std::string text = ToBytes(ToText(bytes));
  std::replace(text.begin(), text.end(), '\0', ' ');
  text.resize(Beginning(text).size());
  return text;
}

int ReadText(sd_bus_message* value, const char* property, std::string& text, sd_bus_error* error) {
  const char* sent = nullptr;
  const int result = sd_bus_message_read_basic(value, 's', &sent);  // sd-bus lets valid UTF-8 through and no other
  if (result <= 0) return result;
  const std::string_view whole = sent;
  if (Beginning(whole).size() < whole.size()) {
    return sd_bus_error_setf(error, SD_BUS_ERROR_INVALID_ARGS, "%s takes a text of at most %d characters", property,
                             kLongestText);
  }
  text = whole;
  return result;
}
