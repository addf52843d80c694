#pragma once

#include <string>

#include "core/table.h"
#include "terminal/database_client.h"

class DatabaseCommands;
struct Engine;

/// Database clients on serial ports: one statement a line, one line of reply a value.
class SerialClient : public DatabaseClient {
 public:
  SerialClient(Engine& engine, DatabaseCommands& commands) : engine_(engine), commands_(commands) {}

  /// Takes what has come on the port of channel `ch` and runs the statement of its first whole line.
  void Serve(int ch);

  void Show(int ch, std::string_view caption) override;
  std::string_view IdleCaption() const override { return "Idle..."; }
  void AnswerExecuted(int ch) override;
  void AnswerResult(int ch, const Recordset& result) override;
  void AnswerError(int ch) override;

 private:
  bool TakeLine(int ch);
  void Send(int ch);

  Engine& engine_;
  DatabaseCommands& commands_;
  Table<bool, 32> lineIsCut_{};  ///< its beginning was dropped, and what is left of it is no line
};
