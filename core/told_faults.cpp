#include "core/told_faults.h"

#include <algorithm>
#include <utility>

#include "core/engine.h"
#include "core/error_trap.h"

namespace {

constexpr int kMinute = 60;
/// Different faults of one channel that are kept apart. The one that has been away longest makes room for another.
constexpr std::size_t kMostKept = 8;

bool IsOver(const ToldFault& told) { return told.secondsWithout >= kMinute; }

/// Seconds are counted as they change, not subtracted: somebody may set the clock.
void CountSecond(ToldFault& told, std::int64_t now) {
  if (told.lastSecond == now) return;
  told.lastSecond = now;
  ++told.secondsWithout;
}

void TellRepeats(Engine& engine, int ch, const ToldFault& told) {
  if (told.repeats == 0) return;
  LogCriticalFault(engine, ch, RunTimeError(told.number, told.description),
                   ", came back " + std::to_string(told.repeats) + " times");
}

/// Ends the faults that are over. `current` is the one that the visit has ended with, null if there is none.
void EndOverdue(Engine& engine, int ch, const ToldFault* current) {
  ToldFaults& faults = engine.tables.ChanToldFaults[ch];
  const std::int64_t now = engine.tables.ScanLastSecond;
  for (ToldFault& told : faults) {
    if (&told != current) CountSecond(told, now);
  }
  for (const ToldFault& told : faults) {
    if (IsOver(told)) TellRepeats(engine, ch, told);
  }
  std::erase_if(faults, IsOver);
}

}  // namespace

bool IsNewFault(Engine& engine, int ch, const RunTimeError& fault) {
  ToldFaults& faults = engine.tables.ChanToldFaults[ch];
  const std::int64_t now = engine.tables.ScanLastSecond;
  const auto known = std::ranges::find_if(faults, [&](const ToldFault& told) {
    return told.number == fault.Number() && told.description == fault.Description();
  });
  if (known != faults.end()) {
    ++known->repeats;
    known->secondsWithout = 0;
    known->lastSecond = now;
    EndOverdue(engine, ch, &*known);
    return false;
  }
  EndOverdue(engine, ch, nullptr);
  if (faults.size() == kMostKept) {
    const auto away = std::ranges::max_element(faults, {}, &ToldFault::secondsWithout);
    TellRepeats(engine, ch, *away);
    faults.erase(away);
  }
  faults.push_back({fault.Number(), fault.Description(), 0, now, 0});
  return true;
}

void CountVisitWithoutFault(Engine& engine, int ch) {
  if (!engine.tables.ChanToldFaults[ch].empty()) EndOverdue(engine, ch, nullptr);
}

void EndToldFaults(Engine& engine, int ch) {
  for (const ToldFault& told : std::exchange(engine.tables.ChanToldFaults[ch], {})) TellRepeats(engine, ch, told);
}
