#pragma once

#include <memory>
#include <string>

#include "config/cfg_proc.h"
#include "config/setup/model.h"
#include "core/engine.h"
#include "diagnostics/log_files.h"
#include "platform/database_engine.h"
#include "platform/opc_control.h"
#include "platform/vant_api.h"
#include "publish/publication.h"
#include "terminal/terminal_link.h"
#include "terminal/virtual_terminal.h"

/// The parts of the outside that a program brings.
struct Outside {
  System& system;
  EventLoop& events;
  SerialPorts& ports;
  Files& files;
  OperatorNotice& notice;
  OpcControls& opc;
  VantAPI32& terminals;
  DatabaseEngine& databases;
  StartupForm& startupForm;
  MainForm& mainForm;
  ScanDialogs& dialogs;
};

/// The whole system without its outside: the store and the logic rooms, put together once for all programs.
class Manager {
 public:
  /// `programFolder` is where the .Cfg and log files lie.
  Manager(const Outside& outside, const std::string& programFolder);
  Manager(const Manager&) = delete;
  Manager& operator=(const Manager&) = delete;

  Tables& Store() { return *tables_; }
  Engine& Parts() { return engine_; }
  Publication& Publishing() { return publication_; }
  SetupModel& Setup() { return setup_; }
  VirtualTerminal& Terminal() { return virtualTerminal_; }

 private:
  std::unique_ptr<Tables> tables_;
  LogFiles logs_;
  Publication publication_;
  CfgStore configuration_;
  SetupModel setup_;
  TerminalLink terminal_;
  VirtualTerminal virtualTerminal_;
  Engine engine_;
};
