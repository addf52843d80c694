#pragma once

#include <map>
#include <memory>

#include "platform/database_engine.h"
#include "platform/sqlite/connection.h"

class SqliteSession;

/// The database engine on SQLite. Each channel has a session, and each session a thread, made at its first operation.
/// Nobody is waited for but in Close() and `IsDone`. What an operation may take is told by the limits; the numbers of
/// its faults by platform/sqlite/faults.h.
class SqliteEngine : public DatabaseEngine {
 public:
  explicit SqliteEngine(const SqliteLimits& limits = {});
  SqliteEngine(const SqliteEngine&) = delete;
  SqliteEngine& operator=(const SqliteEngine&) = delete;
  ~SqliteEngine() override;

  DatabaseSession& Session(int ch) override;
  /// Nothing to do: a lock is held by a database that is open, and by no other.
  void Idle() override {}
  /// Sessions handed out before are gone with it.
  void Close() override;

 private:
  SqliteLimits limits_;
  std::map<int, std::unique_ptr<SqliteSession>> sessions_;
};
