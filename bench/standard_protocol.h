#pragma once

#include <string>

#include "tests/support/test_plant.h"

/// Protocol number the benchmarks use.
inline constexpr int kBenchProtocol = 2;

/// A table of twenty status rows over a stream of 17 characters: decimals, mode, polarity, range, motion, units.
void SetUpStandardProtocol(TestPlant& plant);

/// A stream of 17 characters with this indicated weight (0 to 999999), gross mode, two decimal places, pounds.
std::string StandardStream(int weight);
