#include "core/offline.h"

#include <array>
#include <cstdint>

#include "core/channel_state.h"
#include "core/engine.h"
#include "core/error_trap.h"
#include "core/lamps.h"

namespace {

/// Without a tick for this long, and for longer than two of its intervals, the scan counts as held.
constexpr std::int64_t kHeldMilliseconds = 1000;

void SetOfflineBit(Tables& tables, int ch) {
  tables.ChanStatusBits[ch] = static_cast<std::int16_t>(tables.ChanStatusBits[ch] | StatusBit::Offline);
}

void Flush(Engine& engine, int ch) {
  GoOnAfterFault([&] { engine.publisher.Flush(ch); });
}

/// How long nothing has come from the channel while the scan was held, in ticks and in time.
bool TimeOutHasPassed(const Tables& tables, int ch, std::int64_t held) {
  if (tables.ChanProtocol[ch] == 0 || tables.ChanTimeout[ch] <= 0) return false;
  const std::int64_t interval = tables.Timer1Interval;
  const int silentTicks = ReadsStreams(tables, ch) ? TicksSince(tables, tables.ChanStreamEndTick[ch]) : 0;
  return silentTicks * interval + held >= tables.ChanTimeout[ch] * interval;
}

}  // namespace

void FallOffline(Engine& engine, int ch) {
  Tables& tables = engine.tables;
  // The sentinels may say that nothing has been published, but this has.
  if ((tables.ChanStatusBits[ch] & StatusBit::Offline) != 0 && tables.ChanStatusText[ch] == Caption::Offline) return;
  tables.ChanRxBuffer[ch].clear();
  SetOfflineBit(tables, ch);
  if (tables.ChanStatusBits[ch] == tables.ChanPrevStatusBits[ch]) return;
  SetLamp(tables, ch, Item::Error, true);
  SetCaption(tables, ch, Caption::Offline);
  engine.publisher.PublishStatus(ch);
  if (tables.ChanOpcEnabled[ch] == False && tables.ChanDdeServer[ch] == False) return;
  engine.publisher.RepublishOffline(ch);
  if (tables.DebugMode == False) engine.mainForm.SetTrayPicture(TrayPicture::iIdle);
}

void MarkWeightsOld(Engine& engine, int ch) {
  SetOfflineBit(engine.tables, ch);
  GoOnAfterFault([&] { engine.publisher.PublishStatus(ch); });
  GoOnAfterFault([&] { engine.publisher.RepublishOffline(ch); });
  Flush(engine, ch);
}

void WithdrawWeights(Engine& engine, int ch) {
  Tables& tables = engine.tables;
  const std::array weights{&tables.ChanGross[ch], &tables.ChanTare[ch], &tables.ChanNet[ch]};
  for (int kind = 1; kind <= 3; ++kind) {
    weights[static_cast<std::size_t>(kind - 1)]->clear();
    GoOnAfterFault([&] { engine.publisher.SetVal(kind, ch); });
  }
  MarkWeightsOld(engine, ch);
}

void MarkChannelsOfAHeldScan(Engine& engine) {
  Tables& tables = engine.tables;
  const std::int64_t now = engine.system.Milliseconds();
  if (tables.HeldScanTick != tables.ScanTick || tables.Stopped == True) {
    tables.HeldScanTick = tables.ScanTick;
    tables.HeldSince = now;
    return;
  }
  const std::int64_t held = now - tables.HeldSince;
  if (held < kHeldMilliseconds || held < 2 * tables.Timer1Interval) return;
  for (int ch = 0; ch <= tables.MaxChannel; ++ch) {
    if (tables.ChanConnected[ch] == False || !TimeOutHasPassed(tables, ch, held)) continue;
    GoOnAfterFault([&] { FallOffline(engine, ch); });
    Flush(engine, ch);
  }
}
