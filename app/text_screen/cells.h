#pragma once

#include <string>

#include "platform/text_terminal.h"

struct CellPlace;
struct Tables;

/// What the cells of a row say, and how they look.

/// What a row as a whole tells of its channel.
enum class RowTone {
  Normal,    ///< the weights are the device's own, now
  Waiting,   ///< open, but no stream has come yet
  Fault,     ///< in error, silent or given up: its weights are not to be trusted
  Disabled,  ///< switched off in its setup
};

RowTone ToneOf(const Tables& tables, int ch);

/// Letter of a lamp that is on, `Item::Rx` to `Item::Error`.
char LampLetter(int item);

/// Text of a cell. A lamp is its letter or, when it is off, a point; a tare whose number value is 0 is blank.
std::string CellText(const Tables& tables, int ch, int item);

/// Fits the text of a cell into its place. A weight that does not fit becomes a row of `#`, since a weight that
/// has lost digits is a wrong one; a caption loses its dots before it loses letters.
std::string FitCell(std::string text, int item, const CellPlace& place);

Look LookOf(const Tables& tables, int ch, int item);
