#include "core/format_faults.h"

#include <string>

#include "core/engine.h"
#include "core/error_trap.h"
#include "core/fixed_tables.h"
#include "core/sentences.h"

namespace {

void LogError(Engine& engine, const std::string& text) {
  ReportFault(engine, [&] { engine.log.WriteLog(LogType::Error, text); });
}

void ShowBox(Engine& engine, const std::string& text) { engine.notice.MessageBox(kScanErrorCaption, text); }

/// The channels that a protocol's fault kept closed.
struct ClosedChannels {
  int first = kNoChannel;
  std::string list;  ///< "channel 3" or "channels 3, 5"; empty if there is none
};

ClosedChannels ClosedBy(const Tables& tables, int proto) {
  ClosedChannels closed;
  int count = 0;
  for (int ch = 0; ch <= tables.MaxChannel; ++ch) {
    if (tables.ChanFormatRefused[ch] == False || tables.ChanProtocol[ch] != proto) continue;
    if (count == 0) closed.first = ch;
    closed.list += (count++ == 0 ? "" : ", ") + DisplayNumber(ch);
  }
  if (count > 0) closed.list.insert(0, count == 1 ? "channel " : "channels ");
  return closed;
}

std::string NameOf(int proto) { return "Protocol " + std::to_string(proto) + " (" + ProtocolName(proto) + ")"; }

void TellCritical(Engine& engine, int proto, const ClosedChannels& closed, const RunTimeError& fault) {
  const std::string protocol = NameOf(proto) + " of " + closed.list + ":";
  const std::string error = "Critical Error: " + std::to_string(fault.Number()) + "  " + fault.Description();
  LogError(engine, protocol + "  " + error);
  Say(engine.tables, engine.notice, Occasion::CriticalError, closed.first, fault);
  ShowBox(engine, protocol + "\r\n" + error + "\r\nPlease Contact Orvane Technical Services...");
}

}  // namespace

void TellFormatFaults(Engine& engine) {
  int unused = 0;
  std::string firstUnused;  // of those that no enabled channel uses
  for (int proto = 0; proto < engine.tables.ProtoFault.Size(); ++proto) {
    const std::optional<RunTimeError> fault = engine.tables.ProtoFault[proto];
    if (!fault) continue;
    const ClosedChannels closed = ClosedBy(engine.tables, proto);
    if (closed.first != kNoChannel) {
      TellCritical(engine, proto, closed, *fault);
    } else if (unused++ == 0) {
      firstUnused = NameOf(proto) + ": " + fault->Description();
    }
  }
  if (unused == 1) LogError(engine, "A format file that no enabled channel uses cannot be used: " + firstUnused);
  if (unused < 2) return;
  LogError(engine, std::to_string(unused) +
                       " format files that no enabled channel uses cannot be used, the first: " + firstUnused);
}
