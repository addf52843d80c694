#include "tools/client/words.h"

#include <cstdio>

std::string StatusWords(std::int16_t status) {
  struct Bit {
    int value;
    const char* word;
  };
  static constexpr Bit kBits[] = {{1, "out of range"}, {2, "motion"}, {4, "net"}, {8, "lb"}, {16, "offline"}};
  std::string words;
  for (const Bit& bit : kBits) {
    if ((status & bit.value) != 0) words += (words.empty() ? "" : ", ") + std::string(bit.word);
  }
  return words;
}

std::string AnswerWords(std::int16_t answer) {
  if (answer == 0) return "free for a command";
  if (answer > 1000) return "command " + std::to_string(answer - 1000) + " was refused";
  if (answer > 100) return "command " + std::to_string(answer - 100) + " was sent to the device";
  return "not an answer of the manager";
}

std::string NumberText(double number) {
  char text[32];
  std::snprintf(text, sizeof text, "%.15g", number);
  return text;
}
