#pragma once

#include <string>
#include <string_view>

/// The system's bytes as a text that the bus can carry: UTF-8, and a blank for a NUL.
std::string BusText(std::string_view bytes);
