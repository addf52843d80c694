#pragma once

#include <cstdint>
#include <string>
#include <vector>

class RunTimeError;
struct Engine;

/// A fault of one channel that has been told and is not told again while it lasts.
struct ToldFault {
  int number = 0;
  std::string description;
  std::int64_t repeats = 0;  ///< times it came back since it was told
  int secondsWithout = 0;    ///< since it came last
};

using ToldFaults = std::vector<ToldFault>;

/// Takes down that `fault` has ended a visit of channel `ch`, or with `kNoChannel` a tick before any visit. True if it
/// is to be told: it is not one that has been told and still lasts. A fault lasts until the channel has had a minute of
/// visits without it or is opened again.
bool IsFaultToTell(Engine& engine, int ch, const RunTimeError& fault);

/// A second of visits to all channels has passed: faults that have not come back for a minute are over. How often each
/// came back goes into the error log.
void CountSecondOfVisits(Engine& engine);

/// All faults of channel `ch` are over.
void EndToldFaults(Engine& engine, int ch);
