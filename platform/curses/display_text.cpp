#include "platform/curses/display_text.h"

#include <wchar.h>

#include <algorithm>
#include <cstdlib>
#include <optional>

namespace {

/// In a locale of UTF-8 this is its decoder, which refuses what is no valid UTF-8; in any other only ASCII passes.
std::optional<std::wstring> Decoded(std::string_view text) {
  std::wstring wide;
  std::mbstate_t state{};
  while (!text.empty()) {
    wchar_t character = 0;
    const std::size_t used = mbrtowc(&character, text.data(), text.size(), &state);
    if (used > text.size()) return std::nullopt;
    wide += character;
    text.remove_prefix(std::max<std::size_t>(used, 1));  // a zero byte counts as none
  }
  return wide;
}

std::wstring FromLatin1(std::string_view text) {
  std::wstring wide;
  for (const char character : text) wide += static_cast<unsigned char>(character);
  return wide;
}

}  // namespace

std::wstring DisplayText(std::string_view text, int width) {
  std::wstring shown;
  int left = std::max(width, 0);
  for (wchar_t character : Decoded(text).value_or(FromLatin1(text))) {
    int columns = wcwidth(character);
    if (columns < 0 || character == 0) {
      character = L'?';
      columns = 1;
    }
    if (columns > left) break;
    shown += character;
    left -= columns;
  }
  return shown.append(static_cast<std::size_t>(left), L' ');
}

std::string DisplayLine(std::string_view text, int width) {
  std::string line;
  for (const wchar_t character : DisplayText(text, width)) {
    std::string bytes(MB_CUR_MAX, '\0');
    std::mbstate_t state{};
    const std::size_t used = wcrtomb(bytes.data(), character, &state);
    line += used <= bytes.size() ? bytes.substr(0, used) : "?";
  }
  return line;
}
