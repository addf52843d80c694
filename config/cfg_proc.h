#pragma once

#include "config/port_trial.h"
#include "config/setup_screen.h"
#include "core/configuration.h"
#include "core/log.h"
#include "core/tables.h"
#include "platform/files.h"
#include "platform/operator_notice.h"
#include "platform/serial_ports.h"

/// All reading and writing of settings: the system file, one channel file a channel, one format file a protocol,
/// and the trial of a serial port that goes with saving a channel.
class CfgStore : public Configuration {
 public:
  CfgStore(Tables& tables, Files& files, SerialPorts& ports, Log& log, OperatorNotice& notice)
      : tables_(tables), files_(files), log_(log), trial_(tables, ports, log, notice) {}

  /// Actions as `CfgAction` lists them. The screen actions 1, 2, 13 and 14 do nothing while no setup screen is
  /// there, and an unknown action does nothing. Raises what files raise and, for a damaged file, 62 (it ends too
  /// early), 13 (a field of the wrong type), 6 or 9 (a number out of its range), with file, line and field.
  void CfgProc(int action, int number) override;
  void ReadDatabaseRights() override;

  /// The screen that actions 1, 2, 13 and 14 work on; null while there is none. It must outlive the store or be
  /// taken away again.
  void SetSetupScreen(SetupScreen* screen) { screen_ = screen; }

 private:
  void MoveScreen(int action, int number);

  Tables& tables_;
  Files& files_;
  Log& log_;
  PortTrial trial_;
  SetupScreen* screen_ = nullptr;
};
