#include "config/cfg_proc.h"

#include "config/channel_file.h"
#include "config/database_rights_file.h"
#include "config/format_file.h"
#include "config/system_file.h"

void CfgStore::CfgProc(int action, int number) {
  switch (action) {
    case CfgAction::TablesToScreen:
    case CfgAction::ScreenToTables:
    case CfgAction::ProtocolToScreen:
    case CfgAction::ScreenToProtocol:
      return MoveScreen(action, number);
    case CfgAction::ApplySerialSettings:
      return trial_.ApplySettings(number);
    case CfgAction::SaveSerialSettings:
      return trial_.SaveSettings(number);
    case CfgAction::PutSavedSerialSettingsBack:
      return trial_.PutSavedSettingsBack(number);
    case CfgAction::PortTrial:
      return trial_.Run(number);
    case CfgAction::ReadChannelFile:
      return ReadChannelFile(tables_, files_, log_, number);
    case CfgAction::WriteChannelFile:
      trial_.Run(number);  // what it disables is written as disabled
      return WriteChannelFile(tables_, files_, number);
    case CfgAction::RestoreChannelDefaults:
      return RestoreChannelDefaults(tables_, files_, number);
    case CfgAction::DisableChannel:
      tables_.ChanEnabled[number] = False;
      return;
    case CfgAction::ReadFormatFile:
      return LoadFormatFile(tables_, files_, log_, number);
    case CfgAction::WriteFormatFile:
      return SaveFormatFile(tables_, files_, number);
    case CfgAction::ReadSystemFile:
      return ReadSystemFile(tables_, files_, log_);
    case CfgAction::WriteSystemFile:
      return WriteSystemFile(tables_, files_);
    default:
      return;
  }
}

void CfgStore::MoveScreen(int action, int number) {
  if (screen_ == nullptr) return;
  switch (action) {
    case CfgAction::TablesToScreen:
      return screen_->ShowChannel(number);
    case CfgAction::ScreenToTables:
      return screen_->TakeChannel(number);
    case CfgAction::ProtocolToScreen:
      return screen_->ShowProtocol(number);
    case CfgAction::ScreenToProtocol:
      return screen_->TakeProtocol(number);
    default:
      return;
  }
}

void CfgStore::ReadDatabaseRights() { ::ReadDatabaseRights(tables_, files_); }
