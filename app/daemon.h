#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "app/daemon_forms.h"
#include "app/log_notice.h"
#include "app/manager.h"
#include "app/run_summary.h"
#include "app/text_screen/row_printer.h"
#include "app/text_screen/text_screen.h"
#include "config/port_addresses.h"
#include "platform/curses/curses_terminal.h"
#include "platform/dbus/bus_adapter.h"
#include "platform/opcua/opcua_controls.h"
#include "platform/posix/posix_files.h"
#include "platform/posix/posix_serial_ports.h"
#include "platform/posix/posix_system.h"
#include "platform/qt/qt_event_loop.h"
#include "platform/speech/speech.h"
#include "platform/sqlite/sqlite_engine.h"
#include "platform/vant/vant_library.h"

/// What a headless program shows, asked for in its environment.
struct DaemonOptions {
  bool rows = false;     ///< rows as plain lines on standard output, if that is no terminal
  bool summary = false;  ///< a line on standard output at the end
};

/// The system without a window, put together with its real outside. Needs a `QCoreApplication`.
class Daemon {
 public:
  Daemon(const std::string& programFolder, const DaemonOptions& options);

  /// Runs the system until a signal or the operator ends it; returns the exit status, 1 if the start was refused.
  int Run(std::string_view commandLine);

 private:
  void LogFault(const std::string& why);
  void StartSpeech();
  void OpenScreen();
  void CloseScreen();
  void ConnectTimers();
  void ShowTick();
  void ShutDown();

  DaemonOptions options_;
  PosixSystem system_;
  PosixFiles files_;
  PortAddresses addresses_;
  PosixSerialPorts ports_;
  QtEventLoop events_;
  LogNotice notice_;
  OpcUaControls opc_;
  VantLibrary terminals_;
  SqliteEngine databases_;
  DaemonStartupForm startupForm_;
  DaemonMainForm mainForm_;
  HeadlessDialogs dialogs_;
  Manager manager_;
  BusAdapter bus_;

  std::unique_ptr<CursesTerminal> terminal_;
  std::unique_ptr<TextScreen> screen_;
  std::optional<RowPrinter> rows_;
  LineOutput standardOutput_;
  std::unique_ptr<Speech> speech_;
  RunSummary summary_;
};
