#include "config/setup/channel_setup.h"

#include "config/channel_file.h"
#include "config/format_file.h"
#include "config/setup/setup_fault.h"
#include "core/channel_state.h"
#include "core/engine.h"
#include "core/error_trap.h"
#include "core/fixed_tables.h"
#include "core/lamps.h"
#include "core/offline.h"
#include "core/reload.h"

namespace {

constexpr int kNoProtocol = 42;  // a row of the tables that no file fills

int ProtocolToShow(const Tables& tables, int ch) {
  const std::int32_t proto = tables.ChanProtocol[ch];
  return ProtocolName(proto).empty() ? kNoProtocol : proto;
}

/// One that waits to be opened again may not be forgotten over this one.
void KeepWaitingChannel(Tables& tables) {
  if (tables.ReinitChannel != kNoChannel) tables.ChanReopenPending[tables.ReinitChannel] = True;
  tables.ReinitChannel = kNoChannel;
}

/// The next pass begins with the channel that is left, whose visit registers anew: any other terminal's channel that
/// came before it would be read without a registration, and given up for it.
void CloseTerminalLink(Engine& engine, int ch) {
  Tables& tables = engine.tables;
  if (tables.TerminalLinkUp == False) return;
  tables.TerminalLinkRetry = True;
  engine.terminal.CloseProcess();
  tables.TerminalLinkUp = False;
  tables.NextChannelToServe = ch;
}

void ClosePort(Engine& engine, int ch) {
  SerialPort& port = engine.ports.Port(ch);
  if (port.PortOpen()) port.Close();
}

}  // namespace

ChannelSetup::ChannelSetup(Engine& engine, SetupModel& model, SetupForm& form)
    : engine_(engine), model_(model), form_(form), listener_(engine.tables, engine.ports, model) {
  model_.OnFault([this](const RunTimeError& fault) { Tell(fault); });
  model_.OnProtocolShown([this](int proto) {
    if (proto != kNoProtocol) Note(FormatFilePath(engine_.tables, proto));
  });
}

void ChannelSetup::Open(int ch) {
  Tables& tables = engine_.tables;
  if (IsOpen() || tables.Stopped == True || tables.ChannelsInitialised == False) return;
  KeepWaitingChannel(tables);
  tables.EditedChannel = static_cast<std::int16_t>(ch);
  model_.Begin(ch);
  contentShown_.clear();
  if (!Try([&] { CloseTerminalLink(engine_, ch); })) return ExitForm();
  engine_.mainForm.BusyPointer(true);
  engine_.mainForm.Enable(false);
  tables.ScreenPainted = False;
  if (!LeaveChannel(ch)) return ExitForm();
  Load(ch);
  listener_.Start(ch, tables.ChanStream[ch]);
  form_.Show();
}

/// The channel is let go of. False if a port stands in the way.
bool ChannelSetup::LeaveChannel(int ch) {
  Tables& tables = engine_.tables;
  if (tables.ChanConnected[ch] == True) {
    MarkWeightsOld(engine_, ch);
    SetCaption(tables, ch, Caption::Offline);
  }
  for (int lamp : {Item::Rx, Item::Tx}) SetLamp(tables, ch, lamp, false);
  tables.ChanTxQueue[ch].clear();  // meant for the device of before
  if (!Try([&] { ClosePort(engine_, ch); })) return false;
  if (!Try([&] { engine_.log.WriteLog(LogType::Activity, "Tarvex Manager Setup Activated"); })) return false;
  tables.SelectedChannel = ch;
  tables.ChanConnected[ch] = False;
  return tables.ChanOpcEnabled[ch] == False || Try([&] { engine_.publisher.DisconnectOpc(ch); });
}

void ChannelSetup::Load(int ch) {
  Configuration& configuration = engine_.configuration;
  channelFile_ = ChannelFilePath(engine_.tables, ch);
  Try([&] { configuration.CfgProc(CfgAction::ReadChannelFile, ch); });
  Note(channelFile_);
  model_.SetLoading(true);
  configuration.CfgProc(CfgAction::TablesToScreen, ch);
  Try([&] { configuration.CfgProc(CfgAction::ReadFormatFile, engine_.tables.ChanProtocol[ch]); });
  configuration.CfgProc(CfgAction::ProtocolToScreen, ProtocolToShow(engine_.tables, ch));
  model_.SetLoading(false);
}

void ChannelSetup::cmdOk() {
  if (!IsOpen() || model_.Entry().IsOpen() || ChangedElsewhere()) return;
  const int ch = model_.Channel();
  form_.BusyPointer(true);
  listener_.Stop();
  const ProtocolRecord before(engine_.tables, ProtocolToShow(engine_.tables, ch));
  try {
    Save(ch);
  } catch (const RunTimeError& fault) {
    TakeBackSaving(ch, before);
    Tell(fault);
    listener_.Start(ch, {});
    form_.BusyPointer(false);
    return;
  }
  ExitForm();
}

void ChannelSetup::Save(int ch) {
  engine_.configuration.CfgProc(CfgAction::ScreenToTables, ch);
  engine_.configuration.CfgProc(CfgAction::WriteChannelFile, ch);
  const std::int32_t proto = engine_.tables.ChanProtocol[ch];
  if (model_.ProtocolIsSaved(proto)) SaveProtocol(proto);
}

void ChannelSetup::SaveProtocol(int proto) {
  Configuration& configuration = engine_.configuration;
  configuration.CfgProc(CfgAction::ScreenToProtocol, proto);
  configuration.CfgProc(CfgAction::WriteFormatFile, proto);
  // Both files are written; what the new one raises keeps the channel closed and says so.
  Try([&] { configuration.CfgProc(CfgAction::ReadFormatFile, proto); });
  configuration.CfgProc(CfgAction::ProtocolToScreen, proto);
}

/// Nothing is saved by half, and the other channels of the protocol go on with the record of before.
void ChannelSetup::TakeBackSaving(int ch, const ProtocolRecord& before) {
  ClosePort(engine_, ch);
  before.PutInto(engine_.tables);
  const std::string& content = contentShown_[channelFile_];
  if (ContentOf(channelFile_) != content) Try([&] { engine_.files.Replace(channelFile_, content); });
}

void ChannelSetup::cmdCancel() {
  if (!IsOpen() || model_.Entry().IsOpen()) return;
  const int ch = model_.Channel();
  listener_.Stop();
  Configuration& configuration = engine_.configuration;
  Try([&] { configuration.CfgProc(CfgAction::ReadChannelFile, ch); });
  configuration.CfgProc(CfgAction::TablesToScreen, ch);
  Try([&] { configuration.CfgProc(CfgAction::ReadFormatFile, engine_.tables.ChanProtocol[ch]); });
  configuration.CfgProc(CfgAction::ProtocolToScreen, ProtocolToShow(engine_.tables, ch));
  configuration.CfgProc(CfgAction::TablesToScreen, ch);
  ExitForm();
}

LiveLine ChannelSetup::Look(std::optional<FieldId> focus) {
  return listener_.Look(focus, engine_.system.Milliseconds());
}

/// Another program may have saved the same file meanwhile. That is told once; a second Ok puts these settings there.
bool ChannelSetup::ChangedElsewhere() {
  std::string changed;
  for (auto& [path, content] : contentShown_) {
    const bool saved = path == channelFile_ || (model_.ProtocolIsSaved(model_.Protocol()) &&
                                                path == FormatFilePath(engine_.tables, model_.Protocol()));
    std::string now = ContentOf(path);
    if (!saved || now == content) continue;
    content = std::move(now);
    changed += path + "\r\n";
  }
  if (changed.empty()) return false;
  engine_.notice.MessageBox(kSetupErrorCaption,
                            "Another program has changed a file while this setup was open:\r\n" + changed +
                                "Ok once more puts these settings in its place, Cancel takes the file's.");
  return true;
}

void ChannelSetup::Note(const std::string& path) { contentShown_[path] = ContentOf(path); }

/// What cannot be read is told by who needs it.
std::string ChannelSetup::ContentOf(const std::string& path) const {
  std::string content;
  GoOnAfterFault([&] { content = engine_.files.Read(path); });
  return content;
}

/// Runs `step` and tells what it raises. False if a port was refused: what follows makes no sense then.
bool ChannelSetup::Try(const std::function<void()>& step) {
  try {
    step();
    return true;
  } catch (const RunTimeError& fault) {
    Tell(fault);
    return KindOfSetupFault(fault) != SetupFault::Refused;
  }
}

void ChannelSetup::Tell(const RunTimeError& fault) {
  try {
    TellSetupFault(engine_.tables, engine_.log, engine_.notice, model_.Channel(), fault);
  } catch (const RunTimeError& ofLog) {
    engine_.notice.MessageBox(kSetupErrorCaption, fault.Description() + "\r\n" + ofLog.Description());
  }
}

void ChannelSetup::ExitForm() {
  Tables& tables = engine_.tables;
  form_.BusyPointer(true);
  WriteActivity(engine_, "Tarvex Std. Manager Setup Deactivated");
  if (tables.Stopped == False) engine_.events.Timer1().SetEnabled(true);
  engine_.mainForm.BusyPointer(false);
  engine_.mainForm.Enable(true);
  tables.ReinitChannel = tables.EditedChannel;
  tables.EditedChannel = kNoChannel;
  form_.Hide();
  form_.BusyPointer(false);
  model_.End();
}
