#pragma once

#include <string>
#include <string_view>

/// The text without blanks at its ends, each run of blanks and line breaks as one blank.
std::string OnOneLine(std::string_view text);
