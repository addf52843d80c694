#include "platform/dbus/bus_text.h"

#include <algorithm>

#include "platform/qt/text.h"

std::string BusText(std::string_view bytes) {
  std::string text = ToBytes(ToText(bytes));
  std::replace(text.begin(), text.end(), '\0', ' ');
  return text;
}
