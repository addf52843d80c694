#include "tools/setup/stream_print.h"

#include <algorithm>
#include <cstdio>

namespace {

constexpr std::size_t kCharactersALine = 18;

constexpr const char* kControls[] = {"NUL", "SOH", "STX", "ETX", "EOT", "ENQ", "ACK", "BEL", "BS",  "HT",  "LF",
                                     "VT",  "FF",  "CR",  "SO",  "SI",  "DLE", "DC1", "DC2", "DC3", "DC4", "NAK",
                                     "SYN", "ETB", "CAN", "EM",  "SUB", "ESC", "FS",  "GS",  "RS",  "US",  "SP"};

void AppendCell(std::string& line, const std::string& text) {
  line += std::string(text.size() < 4 ? 4 - text.size() : 1, ' ') + text;
}

std::string Hex(unsigned char character) {
  char text[3];
  std::snprintf(text, sizeof text, "%02X", character);
  return text;
}

}  // namespace

std::string CharacterName(unsigned char character) {
  if (character <= ' ') return kControls[character];
  if (character == 127) return "DEL";
  if (character > 127) return "?";
  return std::string(1, static_cast<char>(character));
}

std::string PrintedStream(const std::string& bytes) {
  std::string text;
  for (std::size_t from = 0; from < bytes.size(); from += kCharactersALine) {
    std::string numbers = "pos ", characters = "char", codes = "hex ";
    const std::size_t to = std::min(bytes.size(), from + kCharactersALine);
    for (std::size_t at = from; at < to; ++at) {
      const auto character = static_cast<unsigned char>(bytes[at]);
      AppendCell(numbers, std::to_string(at + 1));
      AppendCell(characters, CharacterName(character));
      AppendCell(codes, Hex(character));
    }
    text += numbers + "\n" + characters + "\n" + codes + "\n";
  }
  return text;
}
