#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/database_engine.h"
#include "platform/run_time_error.h"

/// Databases that answer what their user says, and note what they were asked.
class MemoryDatabases : public DatabaseEngine {
 public:
  std::vector<std::string> asked;                        ///< "open /plant/x.mdb", "execute INSERT ...", in their order
  std::function<Recordset(const std::string&)> onQuery;  ///< result of a query; may raise
  std::function<void(const std::string& operation)> onOperation;  ///< before each operation ends; may raise
  bool slow = false;                                              ///< nothing ends until this is taken back

  DatabaseSession& Session(int ch) override { return sessions_.try_emplace(ch, *this).first->second; }
  void Idle() override { asked.push_back("idle"); }
  void Close() override { asked.push_back("close engine"); }

 private:
  class MemorySession : public DatabaseSession {
   public:
    explicit MemorySession(MemoryDatabases& all) : all_(all) {}
    void BeginCreateDatabase(const std::string& path) override { Begin("create " + path); }
    void BeginOpenDatabase(const std::string& path, bool readOnly) override {
      Begin("open " + path + (readOnly ? " to read" : ""));
    }
    void BeginExecute(const std::string& statement) override { Begin("execute " + statement); }
    void BeginOpenRecordset(const std::string& statement, std::size_t) override {
      Begin("query " + statement);
      query_ = statement;
    }
    void BeginCloseRecordset() override { Begin("close records"); }
    void BeginCloseDatabase() override { Begin("close"); }
    bool IsDone(int) override { return !all_.slow; }
    Recordset End() override {
      const std::optional<std::string> query = std::exchange(query_, std::nullopt);
      if (all_.onOperation) all_.onOperation(all_.asked.back());
      return query && all_.onQuery ? all_.onQuery(*query) : Recordset();
    }
    void Abandon() override { all_.asked.push_back("abandon"); }

   private:
    void Begin(const std::string& operation) {
      all_.asked.push_back(operation);
      query_.reset();
    }

    MemoryDatabases& all_;
    std::optional<std::string> query_;
  };

  std::map<int, MemorySession> sessions_;
};
