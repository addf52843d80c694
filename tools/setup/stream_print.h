#pragma once

#include <string>

/// A few characters as people read them on a terminal: three lines of at most 80 columns for each 18 characters, their
/// numbers from 1, the characters with control characters by name, and their codes in hex.
std::string PrintedStream(const std::string& bytes);

/// A character by itself: printable as it is, a control character by its name.
std::string CharacterName(unsigned char character);
