#pragma once

#include <termios.h>

#include <optional>
#include <string_view>

/// Speed and frame of a serial line, in the form the terminal driver takes them.
struct LineSettings {
  speed_t speed;
  tcflag_t frame;  ///< parity, data bits and stop bits
};

/// Reads a text such as "9600,N,8,1": baud 1200 to 38400, parity N, O or E in either case, 7 or 8 data bits, 1 or
/// 2 stop bits. Nothing for any other text.
std::optional<LineSettings> ParseLineSettings(std::string_view text);

/// Driver settings of a line that carries bytes as they are, never hangs up by itself and echoes nothing. With
/// `xonXoff` the bytes 17 and 19 are flow control in both directions; without it they are data like any other.
termios RawLine(const LineSettings& settings, bool xonXoff);
