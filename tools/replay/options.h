#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/replay/replay.h"

struct ReplayOptions {
  ReplaySetup setup;
  bool json = false;
  bool help = false;
  std::string capture;  ///< path; empty for standard input
};

/// Text of `--help`.
extern const char* const kReplayHelp;

/// Reads the words of the command line behind the program's name. Raises 5 with a text for the operator.
ReplayOptions ReadReplayOptions(const std::vector<std::string>& words);
