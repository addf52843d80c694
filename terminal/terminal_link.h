#pragma once

#include "core/terminal_room.h"
#include "platform/database_engine.h"
#include "platform/vant_api.h"
#include "terminal/database_command.h"
#include "terminal/mailbox.h"
#include "terminal/serial_client.h"
#include "terminal/shared_data.h"

struct Engine;

/// The terminals on the network and the databases behind them. All channels share one registration with the library.
class TerminalLink : public TerminalRoom {
 public:
  TerminalLink(Engine& engine, Tables& tables, VantAPI32& library, DatabaseEngine& databases)
      : engine_(engine),
        library_(library),
        data_(tables, library),
        commands_(engine, databases),
        mailbox_(engine, data_, commands_),
        serial_(engine, commands_) {}

  void OpenWorkspaces() override {}
  void CloseWorkspaces() override { commands_.CloseAll(); }
  TerminalLinkState OpenArcNet(int ch, bool again) override;
  void ServeUnconnected(int ch) override;
  void ReadArcNet(int ch) override;
  void ServeDatabase(int ch) override;
  void AnswerError(int ch) override;
  void CloseProcess() override;
  void AbandonStatements() override;

 private:
  bool Register();
  void GiveUpTerminal(int ch);

  Engine& engine_;
  VantAPI32& library_;
  SharedData data_;
  DatabaseCommands commands_;
  Mailbox mailbox_;
  SerialClient serial_;
};
