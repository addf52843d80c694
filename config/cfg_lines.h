#pragma once

#include <algorithm>
#include <exception>
#include <string>
#include <string_view>

#include "config/cfg_text.h"
#include "platform/run_time_error.h"

/// Calls `step` with a reader on each line of `content` that is not blank, up to the last one. What the first faulty
/// line raises is raised when all have been read.
template <typename Step>
void EachCfgLine(const std::string& content, std::string_view path, const Step& step) {
  std::exception_ptr firstFault;
  std::string_view rest = content;
  for (int line = 1; !rest.empty(); ++line) {
    const std::size_t size = std::min(rest.find('\n'), rest.size() - 1) + 1;
    CfgReader reader(rest.substr(0, rest.find_first_of("\r\n")), path, line);
    try {
      if (!reader.AtEnd()) step(reader);
    } catch (const RunTimeError&) {
      if (!firstFault) firstFault = std::current_exception();
    }
    rest.remove_prefix(size);
  }
  if (firstFault) std::rethrow_exception(firstFault);
}
