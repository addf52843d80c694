#pragma once

#include <string>
#include <string_view>

/// The edge between the system's texts, one byte a character, and a terminal in the program's locale.

/// Characters of `text` (UTF-8, or else Latin-1) that fill exactly `width` columns: cut, or filled with blanks. What
/// the terminal cannot show, and control characters, become a question mark.
std::wstring DisplayText(std::string_view text, int width);

/// The same in the bytes of the locale, for output that is a stream of lines.
std::string DisplayLine(std::string_view text, int width);
