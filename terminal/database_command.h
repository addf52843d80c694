#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "core/tables.h"
#include "platform/database_engine.h"
#include "terminal/database_client.h"
#include "terminal/task.h"

struct Engine;

/// Statements of database clients, one a channel at a time. A tick waits for the database half of its interval at most,
/// and never more than 50 ms, over all its channels; a statement that takes longer is looked after by the next visits
/// of its channel, and its steps go on where they stood.
class DatabaseCommands {
 public:
  DatabaseCommands(Engine& engine, DatabaseEngine& databases) : engine_(engine), databases_(databases) {}

  /// Runs the statement in `ChanDbQuery` on the database in `ChanDbName`. Raises 5 for a statement that cannot be
  /// classified, and the faults of the database; what the statement had open is closed then.
  void Start(int ch, DatabaseClient& client);
  /// Looks after a statement that is still running; false if there is none. Raises as `Start`.
  bool GoOn(int ch);
  /// Gives up what is under way.
  void Abandon(int ch);
  void CloseAll();

  /// Records of the last query of this tick, 0 without one.
  std::int64_t RecordsOfThisTick() const;

 private:
  struct End;

  Task Run(int ch, DatabaseClient& client);
  End EndOf(DatabaseSession& session);
  bool IsDoneInThisTick(DatabaseSession& session);
  void Resume(int ch);

  Engine& engine_;
  DatabaseEngine& databases_;
  std::array<Task, kChannels> tasks_;
  std::int32_t waitingTick_ = -1;
  std::int64_t waited_ = 0;  ///< milliseconds, in that tick
  std::int32_t recordsTick_ = -1;
  std::int64_t records_ = 0;
};
