#pragma once

#include <ostream>
#include <string>
#include <string_view>

#include "tools/replay/replay.h"

/// The bytes with control characters as names, "<STX>", and those above 126 as codes, "<B2>".
std::string MakeVisible(std::string_view bytes);

/// Prints ticks as a table of 100 columns for people. A tick in which nothing came and nothing changed is counted
/// and not printed.
class TablePrinter {
 public:
  explicit TablePrinter(std::ostream& out) : out_(out) {}

  void Print(const Replay& replay, const TickEvents& events);
  /// Tells of silent ticks at the end.
  void Finish() { TellSilentTicks(); }

 private:
  void TellSilentTicks();

  std::ostream& out_;
  bool headed_ = false;
  int silentTicks_ = 0;
  std::string lastRow_;  ///< what the last row showed, without tick and stream
};
