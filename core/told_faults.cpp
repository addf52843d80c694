#include "core/told_faults.h"

#include <algorithm>
#include <utility>

#include "core/engine.h"
#include "core/error_trap.h"

namespace {

constexpr int kMinute = 60;
/// Different faults of one channel that are kept apart. The one that has been away longest makes room for another.
constexpr std::size_t kMostKept = 8;

void TellRepeats(Engine& engine, int ch, const ToldFault& told) {
  if (told.repeats == 0) return;
  LogChannelFault(engine, ch, RunTimeError(told.number, told.description),
                  ", came back " + std::to_string(told.repeats) + " times");
}

void CountSecondWithout(Engine& engine, int ch, ToldFaults& faults) {
  for (ToldFault& told : faults) {
    if (++told.secondsWithout == kMinute) TellRepeats(engine, ch, told);
  }
  std::erase_if(faults, [](const ToldFault& told) { return told.secondsWithout >= kMinute; });
}

}  // namespace

bool IsFaultToTell(Engine& engine, int ch, const RunTimeError& fault) {
  ToldFaults& faults = ch == kNoChannel ? engine.tables.ScanToldFaults : engine.tables.ChanToldFaults[ch];
  for (ToldFault& told : faults) {
    if (told.number != fault.Number() || told.description != fault.Description()) continue;
    ++told.repeats;
    told.secondsWithout = 0;
    return false;
  }
  if (faults.size() == kMostKept) {
    const auto away = std::ranges::max_element(faults, {}, &ToldFault::secondsWithout);
    TellRepeats(engine, ch, *away);
    faults.erase(away);
  }
  faults.push_back({fault.Number(), fault.Description()});
  return true;
}

void CountSecondOfVisits(Engine& engine) {
  CountSecondWithout(engine, kNoChannel, engine.tables.ScanToldFaults);
  for (int ch = 0; ch <= engine.tables.MaxChannel; ++ch) {
    CountSecondWithout(engine, ch, engine.tables.ChanToldFaults[ch]);
  }
}

void EndToldFaults(Engine& engine, int ch) {
  for (const ToldFault& told : std::exchange(engine.tables.ChanToldFaults[ch], {})) TellRepeats(engine, ch, told);
}
