#pragma once

#include <cstdint>
#include <optional>

/// Counts the ticks of a timer by wall-clock seconds. The first tick of a new second ends the count: it
/// returns the ticks of the second before and is not counted itself.
inline std::optional<std::int32_t> CountTick(std::int32_t& rate, std::int64_t& lastSecond, std::int64_t now) {
  if (now == lastSecond) {
    ++rate;
    return std::nullopt;
  }
  const std::int32_t finished = rate;
  rate = 0;
  lastSecond = now;
  return finished;
}

/// Highest tick count: the tick behind it starts again at 0.
inline constexpr std::int32_t kLastTickBeforeWrap = 9'999'999;
