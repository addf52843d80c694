#include "core/scan_engine.h"

#include <exception>
#include <new>

#include "core/engine.h"
#include "core/error_trap.h"
#include "core/initialisation.h"
#include "core/lamps.h"
#include "core/reception.h"
#include "core/tick_rate.h"
#include "core/told_faults.h"

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
  if (!finished) return;
  if (tables.RefreshOpen == True) engine.dialogs.ShowRate(1, *finished);
  CountSecondOfVisits(engine);
}

void StartupMinimise(Engine& engine) {
  Tables& tables = engine.tables;
  if (tables.StartMinimized == False || tables.FirstScanPending == False) return;
  tables.FirstScanPending = False;
  if (tables.NoMinimize == False) engine.mainForm.PutInTray();
}

/// The lamp of a command that has just been sent, or off if it was sent earlier.
void ShowTransmission(Engine& engine, int ch) {
  engine.mainForm.DrawItem(ch, Item::Tx);
  TurnTXLedOff(engine.tables, engine.mainForm, ch);
}

void TakeCommands(Engine& engine, int ch) {
  const Tables& tables = engine.tables;
  const bool bidirectional = tables.ChanBidirectional[ch] == True;
  if (bidirectional) {
    engine.publisher.TakeAutomationCommand(ch);
    ShowTransmission(engine, ch);
  }
  if (bidirectional && tables.ChanOpcEnabled[ch] == True) {
    engine.publisher.TakeOpcCommand(ch);
    ShowTransmission(engine, ch);
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

int NextChannel(const Tables& tables, int ch) { return ch < tables.MaxChannel ? ch + 1 : 0; }

/// `ch` follows the channel being served, for the trap; `kNoChannel` before the first.
void ServeChannels(Engine& engine, int& ch) {
  engine.ports.Poll();
  if (engine.tables.ChannelsInitialised == False) {
    FirstInitialisation(engine, ch);
    engine.tables.NextChannelToServe = 0;
    return;
  }
  Tables& tables = engine.tables;
  ch = tables.NextChannelToServe;
  for (int left = tables.MaxChannel + 1; left > 0; --left) {
    ServeChannel(engine, ch);
    ch = NextChannel(tables, ch);
  }
  tables.NextChannelToServe = 0;
}

/// Runs `step`; what it raises, if anything.
template <typename Step>
std::optional<RunTimeError> FaultOf(const Step& step) {
  try {
    step();
    return std::nullopt;
  } catch (const RunTimeError& fault) {
    return fault;
  } catch (const std::bad_alloc&) {
    return RunTimeError(ErrorNumber::OutOfMemory, "Out of memory");
  } catch (const std::exception& fault) {
    return RunTimeError(ErrorNumber::Internal, std::string("Internal error: ") + fault.what());
  }
}

/// Deals with the fault that has ended the tick on channel `ch`, or before any. The next tick begins behind that
/// channel, so that a fault that comes back in every tick does not keep the others from being visited.
void EndTickWithFault(Engine& engine, int ch, const RunTimeError& fault) {
  Tables& tables = engine.tables;
  if (ch != kNoChannel) tables.NextChannelToServe = NextChannel(tables, ch);
  HandleFault(engine, ch, fault);
  if (ch == kNoChannel || tables.ChanConnected[ch] == False) return;
  // The visit may have ended before the channel was looked at, at each tick anew.
  const auto also = [&](const auto& step) {
    if (const auto further = FaultOf(step)) HandleFault(engine, ch, *further);
  };
  also([&] { CheckTimeout(engine, ch); });
  also([&] { engine.publisher.Flush(ch); });
}

}  // namespace

std::optional<RunTimeError> Timer1Tick(Engine& engine) {
  Tables& tables = engine.tables;
  if (tables.ScanBusy == True) return std::nullopt;
  engine.events.DoEvents();
  if (tables.Stopped == True) return std::nullopt;
  tables.ScanBusy = True;
  if (tables.Timer1Sleep > 0) engine.system.Sleep(tables.Timer1Sleep);
  int ch = kNoChannel;
  const std::optional<RunTimeError> ended = FaultOf([&] {
    CountScanTick(engine);
    ServeChannels(engine, ch);
  });
  if (ended) FaultOf([&] { EndTickWithFault(engine, ch, *ended); });  // what fails again has been told
  tables.ScanBusy = False;
  return ended;
}
