#include "core/transmission.h"

#include <cstdlib>
#include <string>

#include "core/engine.h"
#include "core/error_trap.h"
#include "core/lamps.h"
#include "core/offline.h"
#include "core/tick_rate.h"

namespace {

void CountTxTick(Engine& engine) {
  Tables& tables = engine.tables;
  if (tables.TxTick > kLastTickBeforeWrap) {
    tables.TxTick = 0;
    tables.TxTickWrapped = True;
  } else {
    tables.TxTickWrapped = False;
    ++tables.TxTick;
  }
  if (tables.RefreshOpen == False) return;
  const auto finished = CountTick(tables.TxRate, tables.TxLastSecond, engine.system.WallSeconds());
  if (finished) engine.dialogs.ShowRate(2, *finished);
}

void SendNextCharacter(Engine& engine, int ch) {
  Tables& tables = engine.tables;
  std::string& queue = tables.ChanTxQueue[ch];
  const std::string next = queue.substr(0, 1);
  queue.erase(0, 1);
  ResumeNextOnClosedPort(engine.tables, ch, [&] { engine.ports.Port(ch).Output(next); });
  tables.ChanTxTick[ch] = tables.TxTick;
}

void PaceChannel(Engine& engine, int ch) {
  Tables& tables = engine.tables;
  if (tables.ChanTxQueue[ch].empty()) {
    PutTXLedOut(tables, engine.mainForm, ch);
    return;
  }
  TurnTXLedON(engine.tables, engine.mainForm, ch);
  if (tables.ChanTxDelay[ch] <= 0) {
    PutTXLedOut(tables, engine.mainForm, ch);
    return;
  }
  const double ticksBetween = static_cast<double>(tables.ChanTxDelay[ch]) / engine.events.TxTimer().Interval();
  if (ticksBetween < std::abs(tables.TxTick - tables.ChanTxTick[ch])) {
    SendNextCharacter(engine, ch);
  } else if (tables.Minimized == False && TicksSince(tables, tables.ChanLampTick[Item::Tx][ch]) > 1) {
    PutTXLedOut(tables, engine.mainForm, ch);
  }
}

}  // namespace

void TxTimerTick(Engine& engine) {
  const Tables& tables = engine.tables;
  CountTxTick(engine);
  MarkChannelsOfAHeldScan(engine);
  for (int ch = 0; ch <= tables.MaxChannel; ++ch) {
    if (tables.ChanConnected[ch] == False || tables.ChanConnectUsing[ch] != ConnectUsing::SerialPort) continue;
    try {
      PaceChannel(engine, ch);
    } catch (const RunTimeError& fault) {
      HandleFault(engine, ch, fault);
    }
  }
}
