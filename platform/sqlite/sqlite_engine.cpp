#include "platform/sqlite/sqlite_engine.h"

#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/sqlite/faults.h"

class SqliteSession : public DatabaseSession {
 public:
  explicit SqliteSession(const SqliteLimits& limits) : connection_(limits) {}
  ~SqliteSession() override {
    Quit();
    if (thread_.joinable()) thread_.join();
  }

  void BeginCreateDatabase(const std::string& path) override {
    Begin([this, path] { return connection_.Create(path), Recordset{}; });
  }
  void BeginOpenDatabase(const std::string& path, bool readOnly) override {
    Begin([this, path, readOnly] { return connection_.Open(path, readOnly), Recordset{}; });
  }
  void BeginExecute(const std::string& statement) override {
    Begin([this, statement] { return connection_.Execute(statement), Recordset{}; });
  }
  void BeginOpenRecordset(const std::string& statement, std::size_t values) override {
    Begin([this, statement, values] { return connection_.Query(statement, values); });
  }
  void BeginCloseRecordset() override {
    Begin([] { return Recordset{}; });  // a query has been run to its end, and nothing of it is open
  }
  void BeginCloseDatabase() override {
    Begin([this] { return connection_.Close(), Recordset{}; });
  }

  bool IsDone(int milliseconds) override {
    std::unique_lock lock(mutex_);
    return forCaller_.wait_for(lock, std::chrono::milliseconds(milliseconds), [this] { return Done(); });
  }

  Recordset End() override {
    std::unique_lock lock(mutex_);
    forCaller_.wait(lock, [this] { return Done(); });
    if (const std::exception_ptr fault = std::exchange(fault_, nullptr)) std::rethrow_exception(fault);
    return std::exchange(result_, {});
  }

  void Abandon() override {
    const std::lock_guard lock(mutex_);
    next_ = nullptr;
    result_ = {};
    fault_ = nullptr;
    if (!thread_.joinable()) return;
    abandoned_ = true;
    connection_.Stop();
    forWorker_.notify_one();
  }

  /// Abandons everything for good, without waiting for its end.
  void Quit() {
    Abandon();
    const std::lock_guard lock(mutex_);
    quit_ = true;
    forWorker_.notify_one();
  }

 private:
  using Operation = std::function<Recordset()>;

  bool Done() const { return !next_ && (!running_ || abandoned_); }

  void Begin(Operation operation) {
    const std::lock_guard lock(mutex_);
    if (!Done()) throw RunTimeError(ErrorNumber::Internal, "A database operation was begun within another one.");
    result_ = {};
    fault_ = nullptr;
    try {
      if (!thread_.joinable()) thread_ = std::thread(&SqliteSession::Work, this);
    } catch (const std::system_error& error) {
      throw RunTimeError(DatabaseFault::OutOfResources, std::string("No thread for the database: ") + error.what());
    }
    next_ = std::move(operation);
    forWorker_.notify_one();
  }

  void Work() {
    std::unique_lock lock(mutex_);
    for (;;) {
      forWorker_.wait(lock, [this] { return quit_ || abandoned_ || next_; });
      if (quit_ || abandoned_) {
        lock.unlock();
        connection_.Close();
        lock.lock();
        abandoned_ = false;
        if (quit_) return;
        continue;
      }
      const Operation operation = std::exchange(next_, nullptr);
      running_ = true;
      connection_.BeginOperation();  // under the lock, so that it cannot undo a stop of this operation
      lock.unlock();
      Recordset result;
      std::exception_ptr fault;
      try {
        result = operation();
      } catch (const RunTimeError&) {
        fault = std::current_exception();
      } catch (const std::exception& error) {
        fault = std::make_exception_ptr(RunTimeError(DatabaseFault::OutOfResources, error.what()));
      }
      lock.lock();
      running_ = false;
      if (abandoned_) continue;
      result_ = std::move(result);
      fault_ = fault;
      forCaller_.notify_all();
    }
  }

  std::mutex mutex_;
  std::condition_variable forWorker_;
  std::condition_variable forCaller_;
  Operation next_;  ///< not yet begun
  bool running_ = false;
  bool abandoned_ = false;  ///< what runs has no taker, and everything is to be closed
  bool quit_ = false;
  Recordset result_;
  std::exception_ptr fault_;
  SqliteConnection connection_;  ///< the worker's; others stop it
  std::thread thread_;
};

SqliteEngine::SqliteEngine(const SqliteLimits& limits) : limits_(limits) {}

SqliteEngine::~SqliteEngine() { Close(); }

DatabaseSession& SqliteEngine::Session(int ch) {
  std::unique_ptr<SqliteSession>& session = sessions_[ch];
  if (!session) session = std::make_unique<SqliteSession>(limits_);
  return *session;
}

void SqliteEngine::Close() {
  for (const auto& [ch, session] : sessions_) session->Quit();  // all first, so that they end side by side
  sessions_.clear();
}
