#include "core/scan_engine.h"

#include <exception>
#include <new>

#include "core/engine.h"
#include "core/error_trap.h"
#include "core/initialisation.h"
#include "core/lamps.h"
#include "core/reception.h"
#include "core/tick_rate.h"

namespace {

void CountScanTick(Engine& engine) {
  Tables& tables = engine.tables;
  if (tables.ScanTick > kLastTickBeforeWrap) {
    tables.ScanTick = 0;
    tables.ScanTickWrapped = True;
  } else {
    ++tables.ScanTick;
  }
  const auto finished = CountTick(tables.ScanRate, tables.ScanLastSecond, engine.system.WallSeconds());
  if (finished && tables.RefreshOpen == True) engine.dialogs.ShowRate(1, *finished);
}

void StartupMinimise(Engine& engine) {
  Tables& tables = engine.tables;
  if (tables.StartMinimized == False || tables.FirstScanPending == False) return;
  tables.FirstScanPending = False;
  if (tables.NoMinimize == False) engine.mainForm.PutInTray();
}

void TakeCommands(Engine& engine, int ch) {
  const Tables& tables = engine.tables;
  const bool bidirectional = tables.ChanBidirectional[ch] == True;
  if (bidirectional) {
    engine.publisher.TakeAutomationCommand(ch);
    TurnTXLedOff(engine.tables, ch);
  }
  if (bidirectional && tables.ChanOpcEnabled[ch] == True) {
    engine.publisher.TakeOpcCommand(ch);
    TurnTXLedOff(engine.tables, ch);
  }
}

void ServeChannel(Engine& engine, int ch) {
  const Tables& tables = engine.tables;
  if (tables.ChanConnected[ch] == False) {
    ServeUnconnectedChannel(engine, ch);
    return;
  }
  StartupMinimise(engine);
  TakeCommands(engine, ch);
  if (tables.ChanProtocol[ch] == 0) {
    engine.terminal.ServeDatabase(ch);
  } else {
    ReceptionCycle(engine, ch);
  }
  TurnRXLedOff(engine.tables, engine.mainForm, ch);
  engine.publisher.Flush(ch);
}

/// `ch` follows the channel being served, for the trap.
void ServeChannels(Engine& engine, int& ch) {
  engine.ports.Poll();
  if (engine.tables.ChannelsInitialised == False) {
    FirstInitialisation(engine, ch);
    return;
  }
  for (ch = 0; ch <= engine.tables.MaxChannel; ++ch) ServeChannel(engine, ch);
}

}  // namespace

std::optional<RunTimeError> Timer1Tick(Engine& engine) {
  Tables& tables = engine.tables;
  if (tables.ScanBusy == True) return std::nullopt;
  engine.events.DoEvents();
  if (tables.Stopped == True) return std::nullopt;
  tables.ScanBusy = True;
  if (tables.Timer1Sleep > 0) engine.system.Sleep(tables.Timer1Sleep);
  int ch = 0;
  std::optional<RunTimeError> ended;
  try {
    CountScanTick(engine);
    ServeChannels(engine, ch);
  } catch (const RunTimeError& fault) {
    ended = fault;
  } catch (const std::bad_alloc&) {
    ended.emplace(ErrorNumber::OutOfMemory, "Out of memory");
  } catch (const std::exception& fault) {
    ended.emplace(ErrorNumber::Internal, std::string("Internal error: ") + fault.what());
  }
  if (ended) HandleFault(engine, ch, *ended);
  tables.ScanBusy = False;
  return ended;
}
