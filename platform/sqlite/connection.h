#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <memory>
#include <mutex>
#include <string>

#include "platform/database_engine.h"
#include "platform/sqlite/functions.h"
#include "terminal/sql_dialect.h"

struct sqlite3;
struct sqlite3_stmt;

/// What one operation may take.
struct SqliteLimits {
  std::chrono::milliseconds busy{250};  ///< waiting for locks of others, in sum
  std::chrono::milliseconds statement{30'000};
  std::size_t textBytes = 65'536;  ///< of a value that is kept; the rest of it is cut off
  int valueBytes = 64 << 20;       ///< of a value or record within the engine; a longer one is a fault
};

/// A connection to one database file at a time, used by one thread. Its faults have the numbers of DatabaseFault.
class SqliteConnection : private SqlSurroundings {
 public:
  explicit SqliteConnection(const SqliteLimits& limits) : limits_(limits), functions_(*this) {}
  SqliteConnection(const SqliteConnection&) = delete;
  SqliteConnection& operator=(const SqliteConnection&) = delete;
  ~SqliteConnection() override { Close(); }

  /// Begins an operation: its time runs from here, and an earlier Stop() no longer holds.
  void BeginOperation();
  /// Ends the operation under way as soon as the engine can. From any thread.
  void Stop();

  /// Makes a database file; nothing is open afterwards.
  void Create(const std::string& path);
  void Open(const std::string& path, bool readOnly);
  void Execute(const std::string& statement);
  /// Counts all records and keeps as many whole ones as hold `values` values.
  Recordset Query(const std::string& statement, std::size_t values);
  void Close();

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const;
  };
  using Prepared = std::unique_ptr<sqlite3_stmt, Finalize>;
  using Clock = std::chrono::steady_clock;

  std::string LocalTime() const override;
  bool Stopped() const override;
  static int WaitForLock(void* connection, int);
  static int LookAtClock(void* connection);

  void Connect(const std::string& path, bool readOnly);
  Prepared Prepare(const std::string& statement);
  bool Step(const Prepared& prepared);
  std::string Value(const Prepared& prepared, int column) const;
  [[noreturn]] void Fail(int result, bool running);

  SqliteLimits limits_;
  RegisteredFunctions functions_;
  std::atomic<bool> stop_ = false;
  Clock::time_point lockLimit_{};
  Clock::time_point statementLimit_{};
  std::mutex handle_;  ///< held where `database_` changes, and where another thread uses it
  sqlite3* database_ = nullptr;
  std::string path_;
  bool readOnly_ = false;
  std::string refused_;  ///< by the authorizer
};
