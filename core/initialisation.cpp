#include "core/initialisation.h"

#include "core/channel_state.h"
#include "core/engine.h"
#include "core/fixed_tables.h"
#include "core/format_faults.h"
#include "core/lamps.h"
#include "core/offline.h"
#include "core/sentences.h"
#include "core/setting_limits.h"
#include "core/told_faults.h"
#include "protocol/number.h"

namespace {

constexpr int kDescriptionKind = 10;

/// First: with the channel's file read. Again: its setup has been used. DeviceFound: its port has just been opened.
enum class Pass { First, Again, DeviceFound };

void ClearWeights(Tables& tables, int ch) {
  tables.ChanGross[ch].clear();
  tables.ChanTare[ch].clear();
  tables.ChanNet[ch].clear();
}

/// What an earlier run showed may not stand as if it were live while a box holds up the first tick.
void ForgetEarlierRun(Tables& tables) {
  for (int ch = 0; ch <= tables.MaxChannel; ++ch) {
    ClearWeights(tables, ch);
    SetCaption(tables, ch, Caption::Initializing);
    for (int item = Item::Rx; item <= Item::Error; ++item) tables.ChanIndicator[item][ch] = False;
  }
  ForceRepaint(tables);
}

void SetLampFlagged(Tables& tables, int ch, int item, bool on) {
  tables.ChanIndicator[item][ch] = AsBoolean(on);
  tables.ChanDirty[item][ch] = True;
}

void ResetLamps(Tables& tables, int ch) {
  for (int item : {Item::Rx, Item::Tx, Item::Error}) SetLampFlagged(tables, ch, item, false);
  SetLampFlagged(tables, ch, Item::Sql, tables.ChanProtocol[ch] == 0);
  SetLampFlagged(tables, ch, Item::Enabled, tables.ChanEnabled[ch] == True);
  for (int item : {Item::Units, Item::Net, Item::Motion}) SetLampFlagged(tables, ch, item, false);
}

/// Publishing state of a channel that has just been opened or given up.
void StartPublishing(Tables& tables, int ch) {
  ForceRepublication(tables, ch);
  tables.ChanOpcPending[ch] = True;
}

void ShowDisabled(Tables& tables, int ch) {
  SetCaption(tables, ch, tables.ChanSettingsLost[ch] == True ? Caption::SettingsLost : Caption::DeviceDisabled);
}

/// A channel that could not be opened: disabled in the tables, and not tried again until its setup is used.
void ShowInitializationError(Engine& engine, int ch) {
  Tables& tables = engine.tables;
  MarkWeightsOld(engine, ch);
  tables.ChanConnected[ch] = False;
  tables.ChanEnabled[ch] = False;
  SetCaption(tables, ch, Caption::InitializationError);
  SetLampFlagged(tables, ch, Item::Enabled, false);
  SetLampFlagged(tables, ch, Item::Error, true);
  StartPublishing(tables, ch);
}

void ShowReady(Engine& engine, int ch) {
  engine.publisher.SetVal(kDescriptionKind, ch);
  SetCaption(engine.tables, ch, Caption::Ready);
  engine.tables.ChanConnected[ch] = True;
}

void OpenWithSettings(Tables& tables, int ch, SerialPort& port) {
  port.SetCommPort(tables.ChanPort[ch] + 1);
  port.SetSettings(tables.PortSettingsTable[tables.ChanPortSetup[ch]]);
  port.SetHandshaking(tables.ChanXonXoff[ch] == True ? 1 : 0);
  port.Open();
}

void OpenSerialPort(Engine& engine, int ch, Pass pass) {
  Tables& tables = engine.tables;
  tables.ChanLastRxTick[ch] = tables.ScanTick;
  tables.ChanStreamEndTick[ch] = tables.ScanTick;
  tables.ChanRxBuffer[ch].clear();  // what an earlier opening left behind could be cut into an old weight
  SerialPort& port = engine.ports.Port(ch);
  if (pass != Pass::DeviceFound) {
    if (port.PortOpen()) {
      MarkWeightsOld(engine, ch);
      port.Close();
    }
    OpenWithSettings(tables, ch, port);
  }
  if (port.PortOpen()) {
    ShowReady(engine, ch);
    StartPublishing(tables, ch);
    return;
  }
  ShowInitializationError(engine, ch);
  Say(tables, engine.notice, Occasion::ComPortNotOpened, ch);
}

void OpenArcNetLink(Engine& engine, int ch, Pass pass) {
  Tables& tables = engine.tables;
  ForceRepublication(tables, ch);
  switch (engine.terminal.OpenArcNet(ch, pass != Pass::First)) {
    case TerminalLinkState::Up:
      return ShowReady(engine, ch);
    case TerminalLinkState::NextPass:
      tables.ChanReopenPending[ch] = True;
      return;
    case TerminalLinkState::Down:
      break;
  }
  MarkWeightsOld(engine, ch);
  tables.ChanConnected[ch] = False;
  SetCaption(tables, ch, Caption::InitializationError);
  SetLampFlagged(tables, ch, Item::Error, true);
  Say(tables, engine.notice, Occasion::ArcNetNotRegistered, ch);
}

void OpenLink(Engine& engine, int ch, Pass pass) {
  if (engine.tables.ChanConnectUsing[ch] == ConnectUsing::SerialPort) OpenSerialPort(engine, ch, pass);
  if (engine.tables.ChanConnectUsing[ch] == ConnectUsing::ArcNet) OpenArcNetLink(engine, ch, pass);
}

/// Upper case; empty for a row that the list does not have.
std::string PrimaryUnitsName(const Tables& tables, std::int32_t units) {
  if (units < 0 || units >= tables.UnitsTable.Size()) return {};
  return UpperCase(Trim(tables.UnitsTable[units]));
}

/// The last custom formats are not read at start.
void FindUnreadFormat(Tables& tables, int proto) {
  if (proto <= kLastFormatReadAtStart || tables.ProtoLoaded[proto] == True) return;
  tables.ProtoFault[proto].emplace(ErrorNumber::FileNotFound,
                                   ProtocolName(proto) +
                                       " is not read at start, but when the setup of a channel shows it: open the "
                                       "setup of the channel and press Ok, or choose one of custom formats 1 to 29");
}

/// Without its format a channel would show 0 for a weight, if its weights come by one.
bool LacksFormat(Tables& tables, int ch) {
  const std::int32_t proto = tables.ChanProtocol[ch];
  if (!ReadsStreams(tables, ch)) return false;
  FindUnreadFormat(tables, proto);
  return tables.ProtoFault[proto].has_value();
}

void ChannelSteps(Engine& engine, int ch, Pass pass) {
  Tables& tables = engine.tables;
  tables.ChanStatusDecimals[ch] = False;
  tables.ChanDecimalsKnown[ch] = False;
  tables.ChanDirty[Item::Description][ch] = True;
  if (pass == Pass::First) {
    tables.SelectedChannel = ch;
    SetCaption(tables, ch, Caption::Initializing);
    engine.configuration.CfgProc(CfgAction::ReadChannelFile, ch);
  } else {
    SetCaption(tables, ch, Caption::ReInitializing);
  }
  tables.ChanPrimaryUnitsName[ch] = PrimaryUnitsName(tables, tables.ChanPrimaryUnits[ch]);
  ClearWeights(tables, ch);
  ResetLamps(tables, ch);
  if (tables.ChanEnabled[ch] == False) {
    MarkWeightsOld(engine, ch);
    ShowDisabled(tables, ch);
    StartPublishing(tables, ch);
    return;
  }
  if (const auto unusable = UnusableSetting(tables, ch)) throw *unusable;
  if (LacksFormat(tables, ch)) {
    tables.ChanFormatRefused[ch] = True;
    ShowInitializationError(engine, ch);
    return;
  }
  if (tables.ChanOpcEnabled[ch] == True) engine.publisher.ConnectOpc(ch, pass != Pass::First);
  OpenLink(engine, ch, pass);
}

/// A fault of the file itself is kept until all channels are open. Any other one, of a log, is raised.
void ReadFormat(Engine& engine, int proto) {
  try {
    engine.configuration.CfgProc(CfgAction::ReadFormatFile, proto);
  } catch (const RunTimeError&) {
    if (!engine.tables.ProtoFault[proto]) throw;
  }
}

void InitialiseChannel(Engine& engine, int ch, Pass pass) {
  EndToldFaults(engine, ch);
  engine.tables.ChanDeviceMissing[ch] = False;
  engine.tables.ChanFormatRefused[ch] = False;
  engine.tables.ChanStreamUnfinished[ch] = False;
  try {
    ChannelSteps(engine, ch, pass);
  } catch (...) {
    ShowInitializationError(engine, ch);
    if (pass == Pass::DeviceFound) engine.ports.Port(ch).Close();
    throw;
  }
}

/// Looks once a second for the device of a channel that could not be opened without it, and opens its port if it is
/// there. Its file is read again: the channel may have been disabled or changed there meanwhile. What stands in the
/// way has been told and is not told again.
bool TryToOpenMissingDevice(Engine& engine, int ch) {
  Tables& tables = engine.tables;
  if (tables.ChanDeviceTrySecond[ch] == tables.ScanLastSecond) return false;
  tables.ChanDeviceTrySecond[ch] = tables.ScanLastSecond;
  SerialPort& port = engine.ports.Port(ch);
  try {
    engine.configuration.CfgProc(CfgAction::ReadChannelFile, ch);
    if (tables.ChanEnabled[ch] == False || tables.ChanConnectUsing[ch] != ConnectUsing::SerialPort) {
      tables.ChanDeviceMissing[ch] = False;
      ShowDisabled(tables, ch);
    } else {
      OpenWithSettings(tables, ch, port);
    }
  } catch (const RunTimeError&) {
    // still not to be had
  }
  tables.ChanEnabled[ch] = AsBoolean(port.PortOpen());
  return port.PortOpen();
}

/// The format that kept the channel closed has been mended. The channel's file is read again, since the fault has
/// disabled the channel in the tables.
bool FormatIsGoodAgain(Engine& engine, int ch) {
  Tables& tables = engine.tables;
  if (tables.ChanFormatRefused[ch] == False || tables.ProtoFault[tables.ChanProtocol[ch]]) return false;
  tables.ChanFormatRefused[ch] = False;
  engine.configuration.CfgProc(CfgAction::ReadChannelFile, ch);
  return tables.ChanEnabled[ch] == True;
}

}  // namespace

void RequestFirstInitialisation(Tables& tables) {
  tables.ChannelsInitialised = False;
  tables.InitialisationAnnounced = False;
  tables.NextFormatToRead = 0;
  tables.NextChannelToOpen = 0;
  tables.ChanFormatRefused.Fill(False);
  tables.ChanReopenPending.Fill(False);
  ForgetEarlierRun(tables);
}

void FirstInitialisation(Engine& engine, int& ch) {
  Tables& tables = engine.tables;
  if (tables.InitialisationAnnounced == False) {
    tables.InitialisationAnnounced = True;
    engine.log.WriteLog(LogType::Activity, "Initializing Devices...");
  }
  while (tables.NextFormatToRead <= kLastFormatReadAtStart) ReadFormat(engine, tables.NextFormatToRead++);
  while (tables.NextChannelToOpen <= tables.MaxChannel) {
    ch = tables.NextChannelToOpen++;
    InitialiseChannel(engine, ch, Pass::First);
  }
  tables.ChannelsInitialised = True;
  engine.mainForm.BusyPointer(false);
  TellFormatFaults(engine);
}

void ServeUnconnectedChannel(Engine& engine, int ch) {
  Tables& tables = engine.tables;
  engine.terminal.ServeUnconnected(ch);
  if (tables.EditedChannel != ch) {
    const bool asked = tables.ReinitChannel == ch || tables.ChanReopenPending[ch] == True;
    if (tables.ReinitChannel == ch) tables.ReinitChannel = kNoChannel;
    tables.ChanReopenPending[ch] = False;  // also when opening fails: it is not tried again until the next setup
    if (asked || FormatIsGoodAgain(engine, ch)) {
      InitialiseChannel(engine, ch, Pass::Again);
      engine.mainForm.BusyPointer(false);
      return;
    }
    if (tables.ChanDeviceMissing[ch] == True && TryToOpenMissingDevice(engine, ch)) {
      InitialiseChannel(engine, ch, Pass::DeviceFound);
      if (tables.ChanConnected[ch] == False) {  // its format has been refused meanwhile
        engine.ports.Port(ch).Close();
        return;
      }
      engine.log.WriteLog(LogType::Activity, "Channel: " + DisplayNumber(ch) + "  Device Found, Channel Enabled");
      return;
    }
  }
  ClearWeights(tables, ch);
  for (int item : {Item::Gross, Item::Tare, Item::NetWeight}) tables.ChanDirty[item][ch] = True;
}
