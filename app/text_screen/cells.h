#pragma once

#include <string>

#include "platform/text_terminal.h"

struct TextCell;
struct Tables;

/// What the cells of a row say, and how they look.

/// Letter of a lamp that is on, `Item::Rx` to `Item::Error`.
char LampLetter(int item);

/// Text of a cell. A lamp is its letter or, when it is off, a point.
std::string CellText(const Tables& tables, int ch, int item);

/// Fits the text of a cell into its place. A weight that does not fit becomes a row of `#`, since a weight that
/// has lost digits is a wrong one; a caption loses its dots before it loses letters.
std::string FitCell(std::string text, int item, const TextCell& place);

Look LookOf(const Tables& tables, int ch, int item);
