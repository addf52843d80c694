#pragma once

#include "core/terminal_room.h"

/// The terminal room of an installation without the terminal library and without a database: an ArcNet channel
/// cannot be opened, and a channel of protocol 0 has nothing to do.
class AbsentTerminal : public TerminalRoom {
 public:
  void OpenWorkspaces() override {}
  void CloseWorkspaces() override {}
  bool OpenArcNet(int) override { return false; }
  void RetryRegistration(int) override {}
  void ReadArcNet(int) override {}
  void ServeDatabase(int) override {}
  void CloseProcess() override {}
};
