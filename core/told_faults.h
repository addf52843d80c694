#pragma once

#include <cstdint>
#include <string>
#include <vector>

class RunTimeError;
struct Engine;
struct Tables;

/// A fault of one channel that has been told and is not told again while it lasts.
struct ToldFault {
  int number = 0;
  std::string description;
  std::int64_t repeats = 0;     ///< times it came back since it was told
  std::int64_t lastSecond = 0;  ///< wall-clock second last counted, or that of the fault
  int secondsWithout = 0;       ///< seconds with visits and without the fault
};

using ToldFaults = std::vector<ToldFault>;

/// Takes down that `fault` has ended a visit of channel `ch`. True if it is to be told: it is not one that has been
/// told and still lasts. A fault lasts until the channel has had a minute of visits without it or is opened again.
bool IsNewFault(Engine& engine, int ch, const RunTimeError& fault);

/// A visit of channel `ch` has ended without a fault: those that have not come back for a minute are over.
void CountVisitWithoutFault(Engine& engine, int ch);

/// All faults of channel `ch` are over: how often each came back goes into the error log.
void EndToldFaults(Engine& engine, int ch);
