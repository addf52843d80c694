#include "publish/opc_link.h"

#include <string>

#include "core/channel_state.h"
#include "core/log.h"
#include "core/tables.h"
#include "platform/opc_control.h"
#include "protocol/number.h"

namespace {

constexpr int kUpdateRate = 50;

std::string DevicePrefix(int ch) { return "Device:" + std::to_string(ch) + "; "; }

/// At the first initialisation the log comes first, at a re-initialisation the caption does.
void LogAndShow(Tables& tables, Log& log, int ch, bool reinit, const std::string& logText, const std::string& caption) {
  if (reinit) SetCaption(tables, ch, caption);
  log.WriteLog(LogType::Opc, logText);
  if (!reinit) SetCaption(tables, ch, caption);
}

}  // namespace

void ConnectOpc(Tables& tables, OpcControl& opc, Log& log, int ch, bool reinit) {
  tables.ChanOpcAnswerStaged[ch] = False;
  const std::string handleMark = reinit ? "  h:" : " h:";
  opc.SetServerName(tables.ChanOpcServerName[ch]);
  opc.SetNodeName(tables.ChanOpcNodeName[ch]);
  opc.SetUpdateRate(kUpdateRate);
  opc.Connect();
  const std::string connected = opc.ConnectStatus();
  const std::string connectHandle = std::to_string(opc.ConnectHandle());
  LogAndShow(tables, log, ch, reinit,
             DevicePrefix(ch) + "Connecting... Status: " + connected + handleMark + connectHandle,
             "OPC: " + connected + " : " + connectHandle);

  for (int item = 0; item < tables.ChanOpcTag.Size(); ++item) {
    const std::string& tag = tables.ChanOpcTag[item][ch];
    if (!Trim(tag).empty()) opc.AddTag(static_cast<std::int16_t>(item), tag);
  }
  opc.CreateGroup();
  const std::string created = opc.GroupStatus();
  const std::string groupHandle = std::to_string(opc.GroupHandle());
  LogAndShow(tables, log, ch, reinit,
             DevicePrefix(ch) + "Creating Group/Tags... Status: " + created + handleMark + groupHandle,
             "OPC: " + created + " : " + groupHandle + " : ");
}

void DisconnectOpc(OpcControl& opc, Log& log, int ch) {
  try {
    opc.DeleteGroup();
    log.WriteLog(LogType::Opc, DevicePrefix(ch) + "Deleting Group... Status" + opc.GroupStatus());
  } catch (...) {
    opc.Disconnect();  // a group or a log that fails may not leave the connection standing
    throw;
  }
  opc.Disconnect();
  log.WriteLog(LogType::Opc, DevicePrefix(ch) + "Disconnecting... Status" + opc.ConnectStatus());
}

void UpdateOpc(Tables& tables, OpcControl& opc, int ch) {
  const bool debug = tables.DebugMode == True;
  if (debug) ++tables.DebugOpcUpdates;
  if (tables.ChanOpcBusy[ch] == True) {
    if (debug) ++tables.DebugOpcSkipped;
    return;
  }
  tables.ChanOpcPending[ch] = False;
  tables.ChanOpcBusy[ch] = True;
  try {
    opc.Update();
  } catch (...) {
    tables.ChanOpcBusy[ch] = False;  // a fault of the control may not lock the channel out for good
    throw;
  }
  tables.ChanOpcAnswerStaged[ch] = False;
  tables.ChanOpcTick[ch] = tables.ScanTick;
  tables.ChanOpcBusy[ch] = False;
}
