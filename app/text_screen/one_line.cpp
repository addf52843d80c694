#include "app/text_screen/one_line.h"

std::string OnOneLine(std::string_view text) {
  std::string line;
  bool gap = false;
  for (const char character : text) {
    if (character == ' ' || character == '\r' || character == '\n') {
      gap = !line.empty();
      continue;
    }
    if (gap) line += ' ';
    gap = false;
    line += character;
  }
  return line;
}
