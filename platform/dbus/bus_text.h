#pragma once

#include <systemd/sd-bus.h>

#include <string>
#include <string_view>

/// Most characters of a text on the bus. It bounds the largest message of the system: the seven items of a topic.
inline constexpr int kLongestText = 1024;

/// The system's bytes as a text that the bus can carry: UTF-8, a blank for a NUL, cut to `kLongestText` characters.
std::string BusText(std::string_view bytes);

/// Reads a text that a client writes to `property`. One above `kLongestText` characters is refused with an error that
/// says so, and `text` stays as it was. Positive when `text` was read, else zero or a negative errno.
int ReadText(sd_bus_message* value, const char* property, std::string& text, sd_bus_error* error);
