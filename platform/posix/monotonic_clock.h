#pragma once

#include <cstdint>

/// Milliseconds of a clock that never runs backwards.
std::int64_t MonotonicMilliseconds();
