#pragma once

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
      : tables_(tables), files_(files), ports_(ports), log_(log), notice_(notice) {}

  /// Actions as `CfgAction` lists them. The screen actions 1, 2, 13 and 14 do nothing while no setup screen is
  /// there, and an unknown action does nothing. Raises what files raise and, for a damaged file, 62 (it ends too
  /// early), 13 (a field of the wrong type), 6 or 9 (a number out of its range), with file, line and field.
  void CfgProc(int action, int number) override;

 private:
  Tables& tables_;
  Files& files_;
  SerialPorts& ports_;
  Log& log_;
  OperatorNotice& notice_;
};
