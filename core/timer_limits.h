#pragma once

#include <cstdint>

/// Limits of the timer settings in milliseconds. They keep a mistyped number from stopping the system: a pause holds
/// the one thread that also serves the windows.
inline constexpr std::int32_t kShortestInterval = 1;
inline constexpr std::int32_t kLongestInterval = 60'000;
inline constexpr std::int32_t kLongestPause = 1'000;
