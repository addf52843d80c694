#pragma once

#include <string>
#include <string_view>

#include "app/desktop_notice.h"
#include "app/manager.h"
#include "app/run_summary.h"
#include "config/port_addresses.h"
#include "config/setup/channel_setup.h"
#include "platform/dbus/bus_adapter.h"
#include "platform/opcua/opcua_controls.h"
#include "platform/posix/posix_files.h"
#include "platform/posix/posix_port_probe.h"
#include "platform/posix/posix_serial_ports.h"
#include "platform/posix/posix_system.h"
#include "platform/qt/qt_event_loop.h"
#include "platform/sqlite/sqlite_engine.h"
#include "platform/vant/vant_library.h"
#include "ui/dialogs.h"
#include "ui/double_click_guard.h"
#include "ui/frm_tarvex_startup.h"
#include "ui/frm_tarvex_std_setup.h"
#include "ui/frm_txm.h"

/// The operator's desktop program, put together with its windows and its real outside. Needs a `QApplication`.
class Desktop {
 public:
  /// `summary`: a line on standard output when a signal ends the program.
  Desktop(const std::string& programFolder, bool summary);

  /// Runs the system until the operator or a signal ends it; returns the exit status, 1 if the start was refused.
  int Run(std::string_view commandLine);

 private:
  /// Everything from the files to the first form; with each box of it in the message loop.
  void Start();
  void ConnectTimers();
  std::string DescribePort(int comNumber);
  void Tell(const std::string& text);
  void LogFault(const std::string& why);
  void End();
  /// The display has gone: everything but the windows is closed.
  void EndWithoutDisplay();

  PosixSystem system_;
  PosixFiles files_;
  PortAddresses addresses_;
  PosixSerialPorts ports_;
  PosixPortProbe portProbe_;
  QtEventLoop events_;
  MessageBoxes boxes_;
  Speech speech_;
  DesktopNotice notice_;
  OpcUaControls opc_;
  VantLibrary terminals_;
  SqliteEngine databases_;
  Dialogs dialogs_;
  frmTarvexStartup startupForm_;
  frmTXM mainForm_;
  frmTarvexStdSetup setupForm_;
  Manager manager_;
  ChannelSetup setup_;
  BusAdapter bus_;
  RunSummary summary_;
  bool printSummary_;
  bool endedBySignal_ = false;  ///< nobody may be there to read anything
  DoubleClickGuard doubleClickGuard_;
};
