#pragma once

#include <optional>

#include "platform/run_time_error.h"

struct Tables;

/// Greatest numbers that can be used; the least ones are 0.
inline constexpr int kLastProtocol = 41;
inline constexpr int kLastPort = 67;  ///< COM68
inline constexpr int kLastPortSetup = 53;
inline constexpr int kLongestStream = 4096;

/// What keeps channel `ch` from being opened: a protocol, port or port settings that its list does not have. The
/// description names field and value.
std::optional<RunTimeError> UnusableSetting(const Tables& tables, int ch);
