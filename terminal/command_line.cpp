#include "terminal/command_line.h"

#include "protocol/number.h"

void ParseDBCmd(std::string_view line, std::string_view key, std::string& result) {
  const std::string wanted = "/" + UpperCase(key) + "=";
  const std::size_t start = UpperCase(line).find(wanted);
  if (start == std::string::npos) return;
  const std::size_t end = line.find('!', start + 1);
  if (end == std::string_view::npos) {
    result = "Error:Invalid " + std::string(key);
    return;
  }
  const std::size_t first = start + wanted.size();
  result = line.substr(first, end - first);
}
