#include "platform/sqlite/connection.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <ctime>
#include <utility>

#include "platform/sqlite/authorizer.h"
#include "platform/sqlite/faults.h"

namespace {

constexpr int kStepsBetweenLooks = 1000;  ///< of the engine, at the clock
constexpr int kLongestStatement = 1'000'000;
constexpr int kLongestWait = 10;  ///< between two tries for a lock, ms

void RefuseZeroByte(const std::string& text, int number, const char* what) {
  if (text.find('\0') != std::string::npos) throw RunTimeError(number, std::string(what) + " holds a zero byte.");
}

/// A name is bytes of a file's path and nothing else: to the engine some relative ones would have a meaning.
std::string FileName(const std::string& path) { return path.starts_with('/') ? path : "./" + path; }

}  // namespace

void SqliteConnection::Finalize::operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }

void SqliteConnection::BeginOperation() {
  stop_ = false;
  lockLimit_ = Clock::now() + limits_.busy;
  statementLimit_ = Clock::now() + limits_.statement;
}

void SqliteConnection::Stop() {
  stop_ = true;
  const std::lock_guard lock(handle_);
  if (database_) sqlite3_interrupt(database_);
}

std::string SqliteConnection::LocalTime() const {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  std::array<char, 32> text{};
  return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &local)};
}

bool SqliteConnection::Stopped() const { return stop_ || Clock::now() >= statementLimit_; }

int SqliteConnection::WaitForLock(void* connection, int tries) {
  const auto& self = *static_cast<SqliteConnection*>(connection);
  if (self.stop_ || Clock::now() >= self.lockLimit_) return 0;
  sqlite3_sleep(std::min(tries + 1, kLongestWait));
  return 1;
}

int SqliteConnection::LookAtClock(void* connection) { return static_cast<SqliteConnection*>(connection)->Stopped(); }

void SqliteConnection::Create(const std::string& path) {
  Close();
  RefuseZeroByte(path, DatabaseFault::InvalidPath, "The database's name");
  // The engine would open a file that somebody else has made meanwhile.
  const int file = open(path.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, 0666);
  if (file < 0 && errno == EEXIST)
    throw RunTimeError(DatabaseFault::DatabaseExists, "Database already exists: " + path);
  if (file < 0) throw SystemFault(errno, "The database cannot be created", path);
  close(file);
  try {
    Connect(path, false);
    const int result = sqlite3_exec(database_, "VACUUM", nullptr, nullptr, nullptr);  // writes the head of the file
    if (result != SQLITE_OK) Fail(result, true);
  } catch (...) {
    Close();
    unlink(path.c_str());
    throw;
  }
  Close();
}

void SqliteConnection::Open(const std::string& path, bool readOnly) {
  Close();
  RefuseZeroByte(path, DatabaseFault::FileNotFound, "The database's name");
  struct stat found {};
  if (stat(path.c_str(), &found) != 0) {
    if (errno == ENOENT || errno == ENOTDIR || errno == ENAMETOOLONG) {
      throw RunTimeError(DatabaseFault::FileNotFound, "Could not find the database file: " + path);
    }
    throw SystemFault(errno, "The database cannot be opened", path);
  }
  // Opening a pipe or a device could hang, or do something to it.
  if (!S_ISREG(found.st_mode)) throw RunTimeError(DatabaseFault::NotADatabase, "file is not a database: " + path);
  try {
    Connect(path, readOnly);
    Authorize(database_, refused_);
    // The file is read with the first statement; whether it is a database is to be known now.
    Prepare("SELECT 1 FROM sqlite_master");
  } catch (...) {
    Close();
    throw;
  }
}

void SqliteConnection::Connect(const std::string& path, bool readOnly) {
  path_ = path;
  readOnly_ = readOnly;
  sqlite3* database = nullptr;
  const int flags = (readOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE) | SQLITE_OPEN_FULLMUTEX;
  const int result = sqlite3_open_v2(FileName(path).c_str(), &database, flags, nullptr);
  {
    const std::lock_guard lock(handle_);
    database_ = database;
  }
  if (result != SQLITE_OK) Fail(result, false);
  sqlite3_extended_result_codes(database, 1);
  sqlite3_db_config(database, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(database, SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION, 0, nullptr);
  sqlite3_db_config(database, SQLITE_DBCONFIG_DQS_DML, 1, nullptr);  // the old dialect's texts stand in "" too
  sqlite3_limit(database, SQLITE_LIMIT_LENGTH, limits_.valueBytes);
  sqlite3_limit(database, SQLITE_LIMIT_SQL_LENGTH, kLongestStatement);
  sqlite3_limit(database, SQLITE_LIMIT_ATTACHED, 1);  // the one that VACUUM needs
  sqlite3_busy_handler(database, WaitForLock, this);
  sqlite3_progress_handler(database, kStepsBetweenLooks, LookAtClock, this);
  if (!functions_.Register(database)) Fail(SQLITE_NOMEM, false);
}

void SqliteConnection::Close() {
  sqlite3* database = nullptr;
  {
    const std::lock_guard lock(handle_);
    database = std::exchange(database_, nullptr);
  }
  sqlite3_close(database);
}

SqliteConnection::Prepared SqliteConnection::Prepare(const std::string& statement) {
  if (!database_) throw RunTimeError(DatabaseFault::NotOpen, "No database is open.");
  RefuseZeroByte(statement, DatabaseFault::SyntaxError, "The statement");
  refused_.clear();
  const char* rest = nullptr;
  const auto prepareNext = [&](const char* text, const char* end) {
    sqlite3_stmt* prepared = nullptr;
    const int result = sqlite3_prepare_v2(database_, text,
                                          static_cast<int>(std::min<std::ptrdiff_t>(end - text, kLongestStatement + 1)),
                                          &prepared, &rest);
    return std::pair(result, Prepared(prepared));
  };
  const char* const end = statement.data() + statement.size();
  auto [result, prepared] = prepareNext(statement.data(), end);
  if (result != SQLITE_OK) Fail(result, false);
  if (!prepared) throw RunTimeError(DatabaseFault::SyntaxError, "The statement is empty.");
  while (rest < end) {  // blanks, comments and further semicolons are no statement
    if (const auto [next, another] = prepareNext(rest, end); next != SQLITE_OK || another) {
      throw RunTimeError(DatabaseFault::SyntaxError, "Characters found after end of SQL statement.");
    }
  }
  if (sqlite3_bind_parameter_count(prepared.get()) > 0) {  // it would be taken as null, silently
    const char* const name = sqlite3_bind_parameter_name(prepared.get(), 1);
    throw RunTimeError(DatabaseFault::NoSuchColumn, std::string("No value is given for ") + (name ? name : "?"));
  }
  return std::move(prepared);
}

bool SqliteConnection::Step(const Prepared& prepared) {
  const int result = sqlite3_step(prepared.get());
  if (result != SQLITE_ROW && result != SQLITE_DONE) Fail(result, true);
  return result == SQLITE_ROW;
}

void SqliteConnection::Execute(const std::string& statement) {
  const Prepared prepared = Prepare(TranslateSql(statement));
  if (sqlite3_column_count(prepared.get()) > 0 && sqlite3_stmt_readonly(prepared.get())) {
    throw RunTimeError(DatabaseFault::SelectNotExecutable, "Cannot execute a select query.");
  }
  while (Step(prepared)) {
  }
}

Recordset SqliteConnection::Query(const std::string& statement, std::size_t values) {
  const Prepared prepared = Prepare(TranslateSql(statement));
  const int columns = sqlite3_column_count(prepared.get());
  Recordset found;
  found.fieldCount = static_cast<std::size_t>(columns);
  for (; Step(prepared); ++found.recordCount) {
    if (found.values.size() >= values) continue;
    for (int column = 0; column < columns; ++column) found.values.push_back(Value(prepared, column));
  }
  return found;
}

std::string SqliteConnection::Value(const Prepared& prepared, int column) const {
  sqlite3_stmt* record = prepared.get();
  const int type = sqlite3_column_type(record, column);
  if (type == SQLITE_NULL) return {};
  if (type == SQLITE_INTEGER) return std::to_string(sqlite3_column_int64(record, column));
  if (type == SQLITE_FLOAT) return SqlText(sqlite3_column_double(record, column));
  const void* bytes = type == SQLITE_TEXT ? sqlite3_column_text(record, column) : sqlite3_column_blob(record, column);
  const auto size = static_cast<std::size_t>(sqlite3_column_bytes(record, column));
  if (!bytes) return {};
  const auto* text = static_cast<const char*>(bytes);
  std::size_t kept = std::min(size, limits_.textBytes);
  if (type == SQLITE_TEXT && kept < size) {  // not within a character
    for (int back = 0; back < 3 && kept > 0 && (static_cast<unsigned char>(text[kept]) & 0xC0) == 0x80; ++back) --kept;
  }
  return {text, kept};
}

void SqliteConnection::Fail(int result, bool running) {
  const RunTimeError fault = EngineFault(database_, result, running ? Stage::Running : Stage::Preparing, path_);
  const bool stopped = fault.Number() == DatabaseFault::Interrupted || fault.Number() == DatabaseFault::Expression;
  if (running && stopped && !stop_ && Clock::now() >= statementLimit_) {
    throw RunTimeError(DatabaseFault::Interrupted,
                       fault.Description() + ": the statement ran longer than its limit of " +
                           SqlText(static_cast<double>(limits_.statement.count()) / 1000) + " seconds");
  }
  if (fault.Number() == DatabaseFault::ReadOnlyDatabase && readOnly_) {
    throw RunTimeError(DatabaseFault::PermissionDenied, fault.Description());
  }
  if (!refused_.empty()) throw RunTimeError(fault.Number(), fault.Description() + ": " + refused_ + " is refused");
  throw fault;
}
