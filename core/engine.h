#pragma once

#include "core/configuration.h"
#include "core/forms.h"
#include "core/log.h"
#include "core/publisher.h"
#include "core/tables.h"
#include "core/terminal_room.h"
#include "platform/event_loop.h"
#include "platform/files.h"
#include "platform/operator_notice.h"
#include "platform/serial_ports.h"
#include "platform/system.h"

/// Everything a routine of the engine may reach: the store, the outside, and the rooms above the core.
/// It owns nothing; the program that composes the system keeps all parts alive.
struct Engine {
  Tables& tables;
  System& system;
  EventLoop& events;
  SerialPorts& ports;
  Files& files;
  OperatorNotice& notice;
  Log& log;
  Configuration& configuration;
  Publisher& publisher;
  TerminalRoom& terminal;
  StartupForm& startupForm;
  MainForm& mainForm;
  ScanDialogs& dialogs;
};
