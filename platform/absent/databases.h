#pragma once

#include "platform/database_engine.h"
#include "platform/run_time_error.h"

/// The database engine of a program that may not touch any: every statement is refused.
class AbsentDatabases : public DatabaseEngine {
 public:
  DatabaseSession& Session(int) override { return session_; }
  void Idle() override {}
  void Close() override {}

 private:
  class AbsentSession : public DatabaseSession {
   public:
    void BeginCreateDatabase(const std::string&) override {}
    void BeginOpenDatabase(const std::string&, bool) override {}
    void BeginExecute(const std::string&) override {}
    void BeginOpenRecordset(const std::string&, std::size_t) override {}
    void BeginCloseRecordset() override {}
    void BeginCloseDatabase() override {}
    bool IsDone(int) override { return true; }
    Recordset End() override { throw RunTimeError(3633, "No database engine"); }
    void Abandon() override {}
  };

  AbsentSession session_;
};
