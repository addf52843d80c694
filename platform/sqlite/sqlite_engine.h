#pragma once

#include <chrono>
#include <map>
#include <memory>

#include "platform/database_engine.h"

class SqliteSession;

/// SQLite behind the channels of protocol 0: each channel has a connection and a thread of its own, made when it is
/// first needed.
class SqliteEngine : public DatabaseEngine {
 public:
  /// A statement that runs longer is interrupted, by fault 3059.
  explicit SqliteEngine(std::chrono::milliseconds longestStatement = std::chrono::seconds(30));
  SqliteEngine(const SqliteEngine&) = delete;
  SqliteEngine& operator=(const SqliteEngine&) = delete;
  ~SqliteEngine() override;

  DatabaseSession& Session(int ch) override;
  /// The engine holds no lock between two statements.
  void Idle() override {}
  void Close() override;

 private:
  std::chrono::milliseconds longest_;
  std::map<int, std::unique_ptr<SqliteSession>> sessions_;
};
