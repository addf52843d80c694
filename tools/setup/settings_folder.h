#pragma once

#include <memory>
#include <string>

#include "config/cfg_proc.h"
#include "config/port_addresses.h"
#include "config/setup/check.h"
#include "config/setup/model.h"
#include "diagnostics/log_files.h"
#include "platform/memory/memory_notice.h"
#include "platform/memory/memory_ports.h"
#include "platform/posix/posix_files.h"
#include "platform/posix/posix_port_probe.h"
#include "platform/posix/posix_system.h"
#include "tools/replay/overlay_files.h"

/// A fault of use or of the files, as the tool tells it.
struct SetupToolFault : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The settings of a program's folder with the rules of the setup screen. Everything happens in memory until `Write`.
class SettingsFolder {
 public:
  /// Raises `SetupToolFault` if there is no such folder.
  explicit SettingsFolder(const std::string& folder);

  Tables& Store() { return *tables_; }
  SetupModel& Model() { return model_; }
  const std::string& Folder() const { return tables_->ProgramFolder; }
  PortsOfMachine Ports();
  /// Address behind a COM number. Raises 8002 where a damaged line has closed the port.
  std::string AddressOf(int comNumber) const { return addresses_.AddressOf(comNumber); }
  /// What is wrong with the ports file; empty for nothing.
  const std::string& PortsFault() const { return portsFault_; }

  /// Fills the screen with channel `ch` and its protocol, as the setup screen does. Raises what the files raise.
  void OpenChannel(int ch);
  /// The same with protocol `proto` alone, on a channel of nobody's.
  void OpenProtocol(int proto);
  /// Reads without filling the screen. Raises what the files raise.
  void ReadChannel(int ch);
  void ReadProtocol(int proto);
  /// Looks up the OPC server of channel `ch` and its password. Raises what the files raise.
  void ReadOpcServerOf(int ch);
  void ReadDatabaseRights() { configuration_.ReadDatabaseRights(); }

  /// Takes the screen's fields and puts the files that changed in place, all of them or none.
  void WriteChannel(int ch);
  void WriteProtocol(int proto);

 private:
  void ReadProtocolToShow(int proto);
  void Write();

  std::unique_ptr<Tables> tables_;
  PosixFiles disk_;
  OverlayFiles files_{disk_};
  PosixSystem system_;
  LogFiles log_;
  MemoryNotice notice_;
  MemoryPorts ports_;  // no port is tried: the device may not be there yet
  CfgStore configuration_;
  SetupModel model_;
  PortAddresses addresses_;
  PosixPortProbe probe_;
  std::string portsFault_;
};
