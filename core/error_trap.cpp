#include "core/error_trap.h"

#include <string>
#include <string_view>

#include "core/channel_state.h"
#include "core/engine.h"
#include "core/fixed_tables.h"
#include "core/lamps.h"
#include "core/offline.h"
#include "core/sentences.h"
#include "core/told_faults.h"

namespace {

struct DatabaseFault {
  int first;
  int last;
  std::string_view caption;
  std::string_view logText;
  Occasion occasion;
};

constexpr DatabaseFault kDatabaseFaults[] = {
    {2400, 2499, "SQL ERROR...", "  JET Expression Error: ", Occasion::SqlError},
    {3000, 3999, "DB ERROR...", "  JET Database Error: ", Occasion::DatabaseError},
    {40000, 40999, "RDO ERROR...", "  RDO Error: ", Occasion::DatabaseError},
};

struct PortFault {
  int number;
  std::string_view logText;
  Occasion occasion;
  std::string_view boxText;
};

constexpr PortFault kPortFaults[] = {
    {ErrorNumber::SerialPortInvalid, "Invalid COM: Port Selected.", Occasion::ComPortInvalid,
     "The COM: port you have selected is invalid."},
    {ErrorNumber::SerialPortInUse, "COM: Port Already In Use.", Occasion::ComPortInUse,
     "The COM: port you have selected is already in use..."},
};

const std::string kCriticalError = "Critical Error: ";

std::string ChannelPrefix(int ch) { return ch == kNoChannel ? "Scan:" : "Channel: " + DisplayNumber(ch); }

std::string NumberAndDescription(const RunTimeError& fault) {
  return std::to_string(fault.Number()) + "  " + fault.Description();
}

const DatabaseFault* KindOf(const RunTimeError& fault) {
  for (const DatabaseFault& kind : kDatabaseFaults) {
    if (fault.Number() >= kind.first && fault.Number() <= kind.last) return &kind;
  }
  return nullptr;
}

/// The trap may not fail itself: what cannot be logged is shown.
void LogFromTrap(Engine& engine, const std::string& text) {
  try {
    engine.log.WriteLog(LogType::Error, text);
  } catch (const RunTimeError& fault) {
    engine.notice.MessageBox(kScanErrorCaption, text + "\r\n" + fault.Description());
  }
}

void ShowLamp(Engine& engine, int ch, int item, bool on) {
  engine.tables.ChanIndicator[item][ch] = AsBoolean(on);
  engine.tables.ChanDirty[item][ch] = True;
  engine.mainForm.DrawItem(ch, item);
}

/// The scan stands still until the operator has read it; the timers that go on mark what is not read meanwhile.
void AskOperatorToMend(Engine& engine, int ch, const DatabaseFault& kind, const RunTimeError& fault,
                       const std::string& text) {
  Say(engine.tables, engine.notice, kind.occasion, ch, fault);
  engine.notice.MessageBoxUntilRead("Tarvex VantODBC Error", text + "\r\nPlease Contact Orvane Technical Services...");
  engine.events.DoEvents();
  ForceRepaint(engine.tables);
}

/// A statement that the database has refused: its client is told each time, everybody else once, and the channel waits
/// for the next one.
void TakeDatabaseFault(Engine& engine, int ch, const DatabaseFault& kind, const RunTimeError& fault) {
  Tables& tables = engine.tables;
  ShowLamp(engine, ch, Item::Error, true);
  UpdateStatus(engine, ch, kind.caption);
  engine.mainForm.SetTrayPicture(TrayPicture::iXmit);
  ShowLamp(engine, ch, Item::Tx, true);
  GoOnAfterFault([&] { engine.terminal.AnswerError(ch); });
  SetLamp(tables, ch, Item::Tx, false);
  if (IsFaultToTell(engine, ch, fault)) {
    const std::string text = ChannelPrefix(ch) + std::string(kind.logText) + NumberAndDescription(fault);
    LogFromTrap(engine, text);
    const bool operatorIsThere = tables.Minimized == False;
    if (tables.ChanInteractiveDbErrors[ch] == True && operatorIsThere) {
      AskOperatorToMend(engine, ch, kind, fault, text);
    }
  }
  tables.ChanIndicator[Item::Error][ch] = False;
  tables.ChanDirty[Item::Error][ch] = True;
  SetCaption(tables, ch, Caption::Ready);
}

/// The channel is disabled in the tables alone: its file keeps the user's choice, and is read again so that
/// the setup shows it.
void TakePortFault(Engine& engine, int ch, const PortFault& kind, const RunTimeError& fault) {
  Tables& tables = engine.tables;
  const std::string cause = ChannelPrefix(ch) + "  " + fault.Description();
  LogFromTrap(engine, ChannelPrefix(ch) + "  " + std::string(kind.logText));
  LogFromTrap(engine, cause);
  Say(tables, engine.notice, kind.occasion, ch);
  engine.notice.MessageBoxWithDetail(
      "Tarvex Device Initialization Error",
      std::string(kind.boxText) + "\r\n" + "Restoring default Tarvex Std. settings now...", cause);
  if (kind.number == ErrorNumber::SerialPortInvalid) {
    SerialPort& port = engine.ports.Port(ch);
    port.SetCommPort(1);
    port.SetSettings("9600,n,8,1");
    port.SetHandshaking(0);
  }
  try {
    engine.configuration.CfgProc(CfgAction::ReadChannelFile, ch);
    engine.configuration.CfgProc(CfgAction::TablesToScreen, ch);
  } catch (const RunTimeError& unreadable) {
    LogFromTrap(engine, ChannelPrefix(ch) + "  " + kCriticalError + NumberAndDescription(unreadable));
  }
  // A device that was not there is looked for as long as the channel is enabled in its file.
  tables.ChanDeviceMissing[ch] =
      AsBoolean(kind.number == ErrorNumber::SerialPortInvalid && tables.ChanEnabled[ch] == True);
  tables.ChanEnabled[ch] = False;
  for (int item = Item::Motion; item <= Item::Error; ++item) {
    tables.ChanIndicator[item][ch] = False;
    tables.ChanDirty[item][ch] = True;
  }
  ForceRepaint(tables);
}

void TellCriticalFault(Engine& engine, int ch, const RunTimeError& fault) {
  LogChannelFault(engine, ch, fault);
  Say(engine.tables, engine.notice, Occasion::CriticalError, ch, fault);
  engine.notice.MessageBox(kScanErrorCaption, kCriticalError + NumberAndDescription(fault) + "\r\n" +
                                                  "Please Contact Orvane Technical Services...");
}

/// A stream that could not be taken whole leaves no weight, whatever kind of fault kept it from that.
void WithdrawUnfinishedStream(Engine& engine, int ch, const RunTimeError& fault) {
  if (engine.tables.ChanStreamUnfinished[ch] == False) return;
  engine.tables.ChanStreamUnfinished[ch] = False;
  SetCaption(engine.tables, ch, kCriticalError + std::to_string(fault.Number()));
  WithdrawWeights(engine, ch);
}

/// A fault of the scan that belongs to no channel: nobody's lamps change.
void TakeFaultOfNoChannel(Engine& engine, const RunTimeError& fault) {
  if (IsFaultToTell(engine, kNoChannel, fault)) TellCriticalFault(engine, kNoChannel, fault);
}

/// The Error lamp stays on until a stream of the channel has been taken whole, where it sends any. A fault that lasts
/// is told once.
void TakeCriticalFault(Engine& engine, int ch, const RunTimeError& fault) {
  Tables& tables = engine.tables;
  if (!ReadsStreams(tables, ch)) SetLamp(tables, ch, Item::Error, false);
  if (!IsFaultToTell(engine, ch, fault)) return;
  ForceRepaint(tables);
  TellCriticalFault(engine, ch, fault);
}

void SwitchFaultLamps(Tables& tables, int ch) {
  for (int item : {Item::Error, Item::Rx, Item::Tx}) {
    tables.ChanIndicator[item][ch] = AsBoolean(item == Item::Error);
    tables.ChanDirty[item][ch] = True;
  }
}

}  // namespace

void LogChannelFault(Engine& engine, int ch, const RunTimeError& fault, std::string_view addition) {
  const DatabaseFault* const kind = KindOf(fault);
  const std::string prefix = kind != nullptr ? std::string(kind->logText) : "  " + kCriticalError;
  LogFromTrap(engine, ChannelPrefix(ch) + prefix + NumberAndDescription(fault) + std::string(addition));
}

void TakeClosedPort(Tables& tables, int ch) {
  SwitchFaultLamps(tables, ch);
  SetLamp(tables, ch, Item::Error, false);
}

void HandleFault(Engine& engine, int ch, const RunTimeError& fault) {
  if (ch == kNoChannel) return TakeFaultOfNoChannel(engine, fault);
  WithdrawUnfinishedStream(engine, ch, fault);
  if (fault.Number() == ErrorNumber::SerialPortNotOpen) return TakeClosedPort(engine.tables, ch);
  SwitchFaultLamps(engine.tables, ch);
  if (const DatabaseFault* const kind = KindOf(fault)) return TakeDatabaseFault(engine, ch, *kind, fault);
  for (const PortFault& kind : kPortFaults) {
    if (fault.Number() == kind.number) return TakePortFault(engine, ch, kind, fault);
  }
  TakeCriticalFault(engine, ch, fault);
}

bool ReportFault(Engine& engine, const std::function<void()>& step) {
  try {
    step();
    return true;
  } catch (const RunTimeError& fault) {
    LogFromTrap(engine, kCriticalError + NumberAndDescription(fault));
    engine.notice.MessageBox(kScanErrorCaption, kCriticalError + NumberAndDescription(fault));
    return false;
  }
}

void WriteActivity(Engine& engine, std::string_view text) {
  ReportFault(engine, [&] { engine.log.WriteLog(LogType::Activity, text); });
}
