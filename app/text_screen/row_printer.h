#pragma once

#include <cstdint>
#include <string>

#include "app/text_screen/layout.h"
#include "app/text_screen/rows.h"
#include "platform/system.h"

/// The weigh screen for a place that is no terminal: the rows as plain lines, once a second.
class RowPrinter {
 public:
  RowPrinter(const Tables& tables, System& system) : tables_(tables), system_(system) {}

  /// The lines due now, with line feeds: a head with time and counts, then a line for each channel that is enabled
  /// or failed. Empty until the next second begins, and before the channels have been opened.
  std::string Lines();

 private:
  std::string Line(int ch) const;

  const Tables& tables_;
  System& system_;
  TextLayout layout_ = TextLayoutFor(100);
  StreamRate rate_;
};
