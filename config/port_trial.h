#pragma once

#include <functional>

#include "core/log.h"
#include "core/tables.h"
#include "platform/operator_notice.h"
#include "platform/run_time_error.h"
#include "platform/serial_ports.h"

/// Tries a channel's serial settings on its port before they are saved, and takes them back if the port refuses.
class PortTrial {
 public:
  PortTrial(Tables& tables, SerialPorts& ports, Log& log, OperatorNotice& notice)
      : tables_(tables), ports_(ports), log_(log), notice_(notice) {}

  /// Notes number, settings and handshake of the channel in the three applied tables, closes its port and sets
  /// the port to them. Raises 9 for a channel or a setting outside the tables.
  void ApplySettings(int ch);
  /// Notes what the port has now in the three saved tables.
  void SaveSettings(int ch);
  /// Puts the saved tables back into the port.
  void PutSavedSettingsBack(int ch);

  /// Saves, applies, and opens the port of an enabled channel, whatever the channel is connected by. A refused port
  /// gets its saved settings back and the channel is disabled in the tables; every fault is told here, so that
  /// nothing of the port is raised. Raises what the log raises.
  void Run(int ch);

 private:
  bool Try(int ch, const std::function<void()>& step);
  bool TakeFault(int ch, const RunTimeError& fault);
  void Disable(int ch);

  Tables& tables_;
  SerialPorts& ports_;
  Log& log_;
  OperatorNotice& notice_;
};
