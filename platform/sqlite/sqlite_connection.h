#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <string>

#include "platform/database_engine.h"

struct sqlite3;
struct sqlite3_stmt;

/// One database at a time, used by one thread. All operations wait for their end and raise the numbers of
/// `DatabaseSession`. A statement may touch the open database alone; it waits 250 ms for another user's lock.
class SqliteConnection {
 public:
  explicit SqliteConnection(std::chrono::milliseconds longestStatement) : longest_(longestStatement) {}
  SqliteConnection(const SqliteConnection&) = delete;
  SqliteConnection& operator=(const SqliteConnection&) = delete;
  ~SqliteConnection() { Close(); }

  void Create(const std::string& path);
  void Open(const std::string& path, bool readOnly);
  void Execute(const std::string& statement);
  Recordset Query(const std::string& statement, std::size_t values);
  void Close();

  /// From any thread: what is running, and what is begun before `Allow`, ends as soon as it can.
  void Interrupt() { interrupted_ = true; }
  void Allow() { interrupted_ = false; }

 private:
  class Statement;

  [[noreturn]] void Raise(int stage);
  static int MayGoOn(void* self);

  std::chrono::milliseconds longest_;
  std::atomic<bool> interrupted_ = false;
  std::chrono::steady_clock::time_point deadline_;
  sqlite3* database_ = nullptr;
  std::string path_;
  bool readOnly_ = false;
};
