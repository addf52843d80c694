#include "terminal/database_command.h"

#include <algorithm>
#include <coroutine>

#include "core/engine.h"
#include "core/error_trap.h"
#include "terminal/audit_log.h"
#include "terminal/database_rights.h"
#include "terminal/statement.h"

namespace {

constexpr std::int64_t kLongestWait = 50;  // milliseconds a tick

Task& TaskOf(std::array<Task, kChannels>& tasks, int ch) { return tasks.at(static_cast<std::size_t>(ch)); }

}  // namespace

/// The end of the operation that a session has been given.
struct DatabaseCommands::End {
  DatabaseCommands& commands;
  DatabaseSession& session;

  bool await_ready() const { return commands.IsDoneInThisTick(session); }
  void await_suspend(std::coroutine_handle<>) const {}
  Recordset await_resume() const { return session.End(); }
};

DatabaseCommands::End DatabaseCommands::EndOf(DatabaseSession& session) { return {*this, session}; }

bool DatabaseCommands::IsDoneInThisTick(DatabaseSession& session) {
  if (waitingTick_ != engine_.tables.ScanTick) {
    waitingTick_ = engine_.tables.ScanTick;
    waited_ = 0;
  }
  const std::int64_t start = engine_.system.Milliseconds();
  // Half of the interval at most, so that the ticks keep their pace.
  const std::int64_t most = std::min<std::int64_t>(kLongestWait, engine_.tables.Timer1Interval / 2);
  const bool done = session.IsDone(static_cast<int>(std::max<std::int64_t>(0, most - waited_)));
  waited_ += engine_.system.Milliseconds() - start;
  return done;
}

Task DatabaseCommands::Run(int ch, DatabaseClient& client) {
  Tables& tables = engine_.tables;
  const StatementKind kind = ClassifyStatement(tables, ch);
  if (tables.ChanDbDriver[ch] == 0) {
    DatabaseSession& session = databases_.Session(ch);
    std::string& name = tables.ChanDbName[ch];
    const std::string& query = tables.ChanDbQuery[ch];
    const std::string& inText = tables.ChanDbInText[ch];
    if (kind == StatementKind::Action) {
      if (!inText.empty() && CreatesDatabase(tables, ch)) {
        client.Show(ch, "Creating DB...");
        WriteAuditLog(engine_, ch, LogType::Sql, "Creating DB: " + inText + "...");
        session.BeginCreateDatabase(DatabaseToWrite(tables, ch, inText));
        co_await EndOf(session);
        databases_.Idle();
        client.Show(ch, client.IdleCaption());
      } else if (!inText.empty()) {
        name = inText;
      }
      client.Show(ch, "Opening DB...");
      WriteAuditLog(engine_, ch, LogType::Sql, "Opening: " + name + "...");
      session.BeginOpenDatabase(DatabaseToWrite(tables, ch, name), false);
      co_await EndOf(session);
      client.Show(ch, "Executing Query...");
      WriteAuditLog(engine_, ch, LogType::Sql, "Executing: " + query + "...");
      session.BeginExecute(query);
      co_await EndOf(session);
      WriteAuditLog(engine_, ch, LogType::Sql, "Completed: " + query + "...");
      client.Show(ch, "Closing DB...");
      session.BeginCloseDatabase();
      co_await EndOf(session);
      client.Show(ch, client.IdleCaption());
      client.AnswerExecuted(ch);
    } else {
      client.Show(ch, "Opening DB...");
      WriteAuditLog(engine_, ch, LogType::Sql, "Opening: " + name + "...");
      const DatabaseFile file = DatabaseToRead(tables, ch, name);
      session.BeginOpenDatabase(file.path, file.readOnly);
      co_await EndOf(session);
      WriteAuditLog(engine_, ch, LogType::Sql, "Opening: " + query + "...");
      client.Show(ch, "Running Query...");
      session.BeginOpenRecordset(query, kDbRows - 1);
      const Recordset result = co_await EndOf(session);
      recordsTick_ = tables.ScanTick;
      records_ = result.recordCount;
      WriteAuditLog(engine_, ch, LogType::Sql, "Record Count = " + std::to_string(result.recordCount));
      client.Show(ch, client.IdleCaption());
      client.AnswerResult(ch, result);
      client.Show(ch, "Closing Query...");
      session.BeginCloseRecordset();
      co_await EndOf(session);
      client.Show(ch, "Closing DB...");
      session.BeginCloseDatabase();
      co_await EndOf(session);
      client.Show(ch, client.IdleCaption());
    }
  }
  databases_.Idle();
  tables.ChanDbName[ch].clear();
  tables.ChanDbQuery[ch].clear();
  engine_.mainForm.SetTrayPicture(TrayPicture::iIdle);
}

void DatabaseCommands::Resume(int ch) {
  Task& task = TaskOf(tasks_, ch);
  try {
    task.Resume();
    if (!task.IsUnderWay()) task = Task();
  } catch (...) {
    task = Task();
    databases_.Session(ch).Abandon();
    throw;
  }
}

void DatabaseCommands::Start(int ch, DatabaseClient& client) {
  TaskOf(tasks_, ch) = Run(ch, client);
  Resume(ch);
}

bool DatabaseCommands::GoOn(int ch) {
  if (!TaskOf(tasks_, ch).IsUnderWay()) return false;
  if (databases_.Session(ch).IsDone(0)) Resume(ch);
  return true;
}

void DatabaseCommands::Abandon(int ch) {
  if (!TaskOf(tasks_, ch).IsUnderWay()) return;
  TaskOf(tasks_, ch) = Task();
  databases_.Session(ch).Abandon();
}

void DatabaseCommands::CloseAll() {
  for (int ch = 0; ch < kChannels; ++ch) Abandon(ch);
  databases_.Close();
}

std::int64_t DatabaseCommands::RecordsOfThisTick() const {
  return recordsTick_ == engine_.tables.ScanTick ? records_ : 0;
}
