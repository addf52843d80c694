#pragma once

#include <cstddef>

/// How often this program has asked for memory so far.
std::size_t AllocationCount();
