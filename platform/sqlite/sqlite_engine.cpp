#include "platform/sqlite/sqlite_engine.h"

#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <new>
#include <thread>
#include <utility>

#include "platform/run_time_error.h"
#include "platform/sqlite/sqlite_connection.h"

/// Operations run one after the other on the session's thread. The newest is the one that is looked after; what was
/// given up runs to its end unseen.
class SqliteSession : public DatabaseSession {
 public:
  explicit SqliteSession(std::chrono::milliseconds longest) : connection_(longest) {}
  SqliteSession(const SqliteSession&) = delete;
  SqliteSession& operator=(const SqliteSession&) = delete;
  ~SqliteSession() override {
    {
      const std::lock_guard lock(guard_);
      connection_.Interrupt();
      ending_ = true;
    }
    changed_.notify_all();
    if (thread_.joinable()) thread_.join();
  }

  void BeginCreateDatabase(const std::string& path) override {
    Begin([this, path] {
      connection_.Create(path);
      return Recordset();
    });
  }
  void BeginOpenDatabase(const std::string& path, bool readOnly) override {
    Begin([this, path, readOnly] {
      connection_.Open(path, readOnly);
      return Recordset();
    });
  }
  void BeginExecute(const std::string& statement) override {
    Begin([this, statement] {
      connection_.Execute(statement);
      return Recordset();
    });
  }
  void BeginOpenRecordset(const std::string& statement, std::size_t values) override {
    Begin([this, statement, values] { return connection_.Query(statement, values); });
  }
  void BeginCloseRecordset() override {
    Begin([] { return Recordset(); });  // the query has been run to its end
  }
  void BeginCloseDatabase() override {
    Begin([this] {
      connection_.Close();
      return Recordset();
    });
  }

  bool IsDone(int milliseconds) override {
    std::unique_lock lock(guard_);
    const auto isDone = [this] { return finished_ == newest_; };
    return isDone() || (milliseconds > 0 && changed_.wait_for(lock, std::chrono::milliseconds(milliseconds), isDone));
  }
  Recordset End() override {
    const std::lock_guard lock(guard_);
    if (const std::exception_ptr fault = std::exchange(fault_, nullptr)) std::rethrow_exception(fault);
    return std::exchange(result_, Recordset());
  }
  void Abandon() override {
    {
      const std::lock_guard lock(guard_);
      if (!thread_.joinable()) return;
      connection_.Interrupt();
      waiting_.clear();
    }
    Begin([this] {
      connection_.Close();
      connection_.Allow();
      return Recordset();
    });
  }

 private:
  using Operation = std::function<Recordset()>;

  void Begin(Operation operation) {
    const std::lock_guard lock(guard_);
    waiting_.emplace_back(++newest_, std::move(operation));
    result_ = {};
    fault_ = nullptr;
    if (!thread_.joinable()) thread_ = std::thread([this] { Work(); });
    changed_.notify_all();
  }

  void Work() {
    std::unique_lock lock(guard_);
    for (;;) {
      changed_.wait(lock, [this] { return ending_ || !waiting_.empty(); });
      if (ending_) return connection_.Close();
      const auto [number, operation] = std::move(waiting_.front());
      waiting_.pop_front();
      lock.unlock();
      Recordset result;
      std::exception_ptr fault;
      try {
        result = operation();
      } catch (const RunTimeError&) {
        fault = std::current_exception();
      } catch (const std::exception& unexpected) {
        fault = std::make_exception_ptr(RunTimeError(3035, std::string("Database engine: ") + unexpected.what()));
      }
      lock.lock();
      finished_ = number;
      if (number == newest_) {
        result_ = std::move(result);
        fault_ = fault;
      }
      changed_.notify_all();
    }
  }

  SqliteConnection connection_;  ///< of the thread, but for its interruption
  std::mutex guard_;             ///< of what follows
  std::condition_variable changed_;
  std::deque<std::pair<std::uint64_t, Operation>> waiting_;
  std::uint64_t newest_ = 0, finished_ = 0;
  Recordset result_;
  std::exception_ptr fault_;
  bool ending_ = false;
  std::thread thread_;
};

SqliteEngine::SqliteEngine(std::chrono::milliseconds longestStatement) : longest_(longestStatement) {}

SqliteEngine::~SqliteEngine() = default;

DatabaseSession& SqliteEngine::Session(int ch) {
  std::unique_ptr<SqliteSession>& session = sessions_[ch];
  if (!session) session = std::make_unique<SqliteSession>(longest_);
  return *session;
}

void SqliteEngine::Close() { sessions_.clear(); }
