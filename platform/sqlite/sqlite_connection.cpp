#include "platform/sqlite/sqlite_connection.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>

#include "platform/sqlite/sqlite_faults.h"
#include "platform/sqlite/sqlite_functions.h"
#include "protocol/number.h"
#include "terminal/sql_dialect.h"

namespace {

constexpr int kLockWait = 250;             // milliseconds
constexpr int kStepsBetweenLooks = 1000;   // of the engine's machine, far below a millisecond
constexpr int kLongestValue = 16'000'000;  // bytes that the engine itself works with
constexpr int kLongestStatement = 100'000;
constexpr int kLongestText = 65'536;  // bytes of a value that is handed on

/// Looks at the schema, which change nothing although they have an argument.
constexpr std::string_view kPragmasToRead[] = {
    "table_info",  "table_xinfo",      "table_list",        "index_list",      "index_info",
    "index_xinfo", "foreign_key_list", "foreign_key_check", "integrity_check", "quick_check"};
/// Those that do something without an argument.
constexpr std::string_view kPragmasThatAct[] = {"wal_checkpoint", "optimize", "incremental_vacuum", "shrink_memory"};

template <typename Names>
bool IsOneOf(const char* name, const Names& names) {
  return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

/// A statement may not reach out of its database, nor change how the engine works on it.
int Authorise(void*, int action, const char* first, const char* second, const char*, const char*) {
  switch (action) {
    case SQLITE_ATTACH:
    case SQLITE_DETACH:
      return SQLITE_DENY;
    case SQLITE_FUNCTION:
      return second != nullptr && sqlite3_stricmp(second, "load_extension") == 0 ? SQLITE_DENY : SQLITE_OK;
    case SQLITE_PRAGMA:
      if (second != nullptr) return IsOneOf(first, kPragmasToRead) ? SQLITE_OK : SQLITE_DENY;
      return IsOneOf(first, kPragmasThatAct) ? SQLITE_DENY : SQLITE_OK;
    default:
      return SQLITE_OK;
  }
}

[[noreturn]] void RaiseFor(int error, const std::string& path) {
  using namespace DatabaseFaultNumber;
  const std::string reason = path + ": " + std::strerror(error);
  switch (error) {
    case EEXIST:
      throw RunTimeError(DatabaseExists, "Database already exists: " + path);
    case ENOENT:
      throw RunTimeError(FileNotFound, "Could not find file " + path);
    case EACCES:
    case EPERM:
    case EROFS:
      throw RunTimeError(PermissionDenied, reason);
    case ENOSPC:
    case EDQUOT:
      throw RunTimeError(3026, reason);
    default:
      throw RunTimeError(PathNotValid, reason);
  }
}

std::string ValueText(sqlite3_stmt* statement, int column) {
  const int type = sqlite3_column_type(statement, column);
  if (type == SQLITE_NULL) return {};
  if (type == SQLITE_FLOAT) {
    try {
      return std::string(GeneralText(Decimal::FromDouble(sqlite3_column_double(statement, column))).View());
    } catch (const RunTimeError&) {
      return "1.#INF";  // no number can be written for it
    }
  }
  const auto* const text = static_cast<const char*>(sqlite3_column_blob(statement, column));
  if (type == SQLITE_INTEGER) return std::to_string(sqlite3_column_int64(statement, column));
  const int size = std::min(sqlite3_column_bytes(statement, column), kLongestText);
  return text == nullptr ? std::string() : std::string(text, static_cast<std::size_t>(size));
}

}  // namespace

/// A prepared statement; its end frees what it holds.
class SqliteConnection::Statement {
 public:
  Statement(SqliteConnection& connection, const std::string& text) : connection_(connection) {
    const std::string rewritten = RewriteStatement(text);
    const char* rest = nullptr;
    connection_.deadline_ = std::chrono::steady_clock::now() + connection_.longest_;
    if (sqlite3_prepare_v2(connection_.database_, rewritten.data(), static_cast<int>(rewritten.size()), &statement_,
                           &rest) != SQLITE_OK) {
      connection_.Raise(static_cast<int>(Stage::Preparing));
    }
    const std::string_view behind(rest, static_cast<std::size_t>(rewritten.data() + rewritten.size() - rest));
    if (behind.find_first_not_of(" \t\r\n;") == std::string_view::npos) return;
    sqlite3_finalize(statement_);
    throw RunTimeError(DatabaseFaultNumber::TextBehindStatement, "Characters found after end of SQL statement.");
  }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  ~Statement() { sqlite3_finalize(statement_); }

  /// Goes to the next row; false at the end.
  bool Step() {
    if (statement_ == nullptr) return false;  // nothing but blanks
    const int result = sqlite3_step(statement_);
    if (result == SQLITE_ROW) return true;
    if (result != SQLITE_DONE) connection_.Raise(static_cast<int>(Stage::Running));
    return false;
  }
  bool OnlySelects() const {
    return statement_ != nullptr && sqlite3_column_count(statement_) > 0 && sqlite3_stmt_readonly(statement_) != 0;
  }
  sqlite3_stmt* Get() const { return statement_; }

 private:
  SqliteConnection& connection_;
  sqlite3_stmt* statement_ = nullptr;
};

void SqliteConnection::Raise(int stage) {
  const RunTimeError fault = FaultOf(database_, static_cast<Stage>(stage));
  if (fault.Number() == DatabaseFaultNumber::Interrupted) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(longest_).count();
    throw RunTimeError(fault.Number(), interrupted_ ? "The statement was given up"
                                                    : "The statement was interrupted: it ran longer than " +
                                                          std::to_string(seconds) + " seconds");
  }
  if (fault.Number() == 3027 && readOnly_) {
    throw RunTimeError(DatabaseFaultNumber::PermissionDenied, "Permission denied: " + path_ + " is open to read only");
  }
  throw fault;
}

int SqliteConnection::MayGoOn(void* self) {
  const auto& connection = *static_cast<const SqliteConnection*>(self);
  return connection.interrupted_ || std::chrono::steady_clock::now() > connection.deadline_ ? 1 : 0;
}

void SqliteConnection::Create(const std::string& path) {
  Close();
  const int file = open(path.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0666);
  if (file < 0) RaiseFor(errno, path);
  close(file);  // an empty file is an empty database
}

void SqliteConnection::Open(const std::string& path, bool readOnly) {
  Close();
  struct stat found {};
  if (stat(path.c_str(), &found) != 0) RaiseFor(errno, path);
  if (!S_ISREG(found.st_mode)) RaiseFor(EISDIR, path);
  if (access(path.c_str(), R_OK) != 0) RaiseFor(errno, path);
  path_ = path;
  readOnly_ = readOnly;
  const int flags = (readOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE) | SQLITE_OPEN_NOMUTEX;
  if (sqlite3_open_v2(path.c_str(), &database_, flags, nullptr) != SQLITE_OK) {
    const RunTimeError fault = FaultOf(database_, Stage::Preparing);
    Close();
    throw fault;
  }
  sqlite3_busy_timeout(database_, kLockWait);
  sqlite3_progress_handler(database_, kStepsBetweenLooks, MayGoOn, this);
  sqlite3_limit(database_, SQLITE_LIMIT_LENGTH, kLongestValue);
  sqlite3_limit(database_, SQLITE_LIMIT_SQL_LENGTH, kLongestStatement);
  sqlite3_db_config(database_, SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION, 0, nullptr);
  sqlite3_db_config(database_, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  RegisterFunctions(database_);
  sqlite3_set_authorizer(database_, Authorise, nullptr);
}

void SqliteConnection::Execute(const std::string& text) {
  Statement statement(*this, text);
  if (statement.OnlySelects()) {
    throw RunTimeError(DatabaseFaultNumber::NoResultAllowed, "Cannot execute a select query: " + text);
  }
  while (statement.Step()) {
  }
}

Recordset SqliteConnection::Query(const std::string& text, std::size_t values) {
  Statement statement(*this, text);
  Recordset result;
  if (statement.Get() == nullptr) return result;
  result.fieldCount = static_cast<std::size_t>(sqlite3_column_count(statement.Get()));
  while (statement.Step()) {
    ++result.recordCount;
    if (result.values.size() >= values) continue;
    for (int column = 0; column < static_cast<int>(result.fieldCount); ++column) {
      result.values.push_back(ValueText(statement.Get(), column));
    }
  }
  return result;
}

void SqliteConnection::Close() {
  sqlite3_close_v2(database_);
  database_ = nullptr;
}
