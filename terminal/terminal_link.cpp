#include "terminal/terminal_link.h"

#include "core/channel_state.h"
#include "core/engine.h"
#include "core/fixed_tables.h"
#include "core/lamps.h"
#include "core/offline.h"
#include "core/sentences.h"
#include "protocol/number.h"
#include "terminal/shared_data_paths.h"

namespace {

constexpr std::int16_t kNode = 125;
constexpr int kGrossKind = 1;

}  // namespace

bool TerminalLink::Register() {
  Tables& tables = engine_.tables;
  tables.VantStatus = library_.VantRegisterProcess(kNode);
  return tables.VantStatus == VantStatusCode::Success;
}

TerminalLinkState TerminalLink::OpenArcNet(int ch, bool again) {
  Tables& tables = engine_.tables;
  SetupArcNetPaths(tables, ch);
  if (tables.TerminalLinkUp == True) return TerminalLinkState::Up;
  const bool registered = Register();
  tables.TerminalLinkUp = AsBoolean(registered);
  if (again) tables.TerminalLinkRetry = AsBoolean(!registered);
  if (!registered) return TerminalLinkState::Down;
  return again ? TerminalLinkState::NextPass : TerminalLinkState::Up;
}

void TerminalLink::ServeUnconnected(int ch) {
  Tables& tables = engine_.tables;
  commands_.Abandon(ch);
  if (tables.TerminalLinkRetry == False || tables.TerminalLinkUp == True) return;
  const bool registered = Register();
  tables.TerminalLinkUp = AsBoolean(registered);
  tables.TerminalLinkRetry = AsBoolean(!registered);
}

/// At the first failure: each further read of a terminal that does not answer would hold up all channels.
void TerminalLink::GiveUpTerminal(int ch) {
  Tables& tables = engine_.tables;
  MarkWeightsOld(engine_, ch);
  tables.ChanConnected[ch] = False;
  tables.ChanEnabled[ch] = False;
  SetCaption(tables, ch, Caption::NetworkIdError);
  for (const int item : {Item::Error, Item::Enabled}) {
    tables.ChanIndicator[item][ch] = AsBoolean(item == Item::Error);
    tables.ChanDirty[item][ch] = True;
  }
  Say(tables, engine_.notice, Occasion::ArcNetNotRead, ch);
  engine_.log.WriteLog(LogType::Error, "Channel: " + DisplayNumber(ch) + "  Network ID Error: status " +
                                           std::to_string(tables.VantStatus) + " of " + tables.ChanPathWt101[ch]);
}

void TerminalLink::ReadArcNet(int ch) {
  Tables& tables = engine_.tables;
  const bool read = data_.Read(tables.ChanPathWt101[ch], kWeightRecord, tables.WeightFieldBuffer);
  if (!read) {
    SharedData::FillRecord(tables.WeightFieldBuffer, {}, kWeightRecord);
    return GiveUpTerminal(ch);
  }
  TurnRXLedONInRow(tables, engine_.mainForm, ch);
  const std::string_view record = tables.WeightFieldBuffer;
  tables.ChanGross[ch] = Trim(record.substr(0, record.find('\0')));
  if ((tables.ChanStatusBits[ch] & StatusBit::Offline) != 0) {  // marked while nobody read it
    tables.ChanStatusBits[ch] = 0;  // the terminal tells no status; older bits are of another device
    SetLamp(tables, ch, Item::Error, false);
    SetCaption(tables, ch, Caption::Ready);
    engine_.publisher.PublishStatus(ch);
  }
  engine_.publisher.SetVal(kGrossKind, ch);
  tables.ChanUpdatePending[ch] = True;
  SharedData::FillRecord(tables.WeightFieldBuffer, {}, kWeightRecord);
}

void TerminalLink::ServeDatabase(int ch) {
  if (commands_.GoOn(ch)) return;
  if (engine_.tables.ChanConnectUsing[ch] == ConnectUsing::SerialPort) serial_.Serve(ch);
  if (engine_.tables.ChanConnectUsing[ch] == ConnectUsing::ArcNet) mailbox_.Serve(ch);
}

void TerminalLink::AnswerError(int ch) {
  if (engine_.tables.ChanConnectUsing[ch] == ConnectUsing::SerialPort) serial_.AnswerError(ch);
  if (engine_.tables.ChanConnectUsing[ch] == ConnectUsing::ArcNet) mailbox_.AnswerError(ch);
}

void TerminalLink::CloseProcess() { engine_.tables.VantStatus = library_.VantCloseProcess(); }

void TerminalLink::AbandonStatements() {
  for (int ch = 0; ch < kChannels; ++ch) commands_.Abandon(ch);
}
