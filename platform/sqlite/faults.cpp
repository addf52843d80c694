#include "platform/sqlite/faults.h"

#include <sqlite3.h>

#include <cerrno>
#include <cstring>
#include <string_view>

namespace {

enum class At { Any, Preparing, Running };

struct Row {
  int result;  ///< of the engine, without its extension
  At at;
  std::string_view holds;  ///< a part of the engine's sentence
  int number;
  bool namesFile;  ///< the file's name belongs to the sentence
};

/// The first row that fits holds.
constexpr Row kRows[] = {
    {SQLITE_ERROR, At::Any, "no such table", DatabaseFault::NoSuchTable, false},
    {SQLITE_ERROR, At::Any, "no such view", DatabaseFault::NoSuchTable, false},
    {SQLITE_ERROR, At::Any, "no such column", DatabaseFault::NoSuchColumn, false},
    {SQLITE_ERROR, At::Any, "has no column named", DatabaseFault::NoSuchColumn, false},
    {SQLITE_ERROR, At::Any, "no such function", DatabaseFault::NoSuchFunction, false},
    {SQLITE_ERROR, At::Any, " already exists", DatabaseFault::TableExists, false},
    {SQLITE_ERROR, At::Any, "cannot start a transaction", DatabaseFault::Transaction, false},
    {SQLITE_ERROR, At::Any, "no transaction is active", DatabaseFault::Transaction, false},
    {SQLITE_ERROR, At::Any, "no such savepoint", DatabaseFault::Transaction, false},
    {SQLITE_ERROR, At::Any, "not authorized", DatabaseFault::PermissionDenied, false},
    {SQLITE_ERROR, At::Preparing, "", DatabaseFault::SyntaxError, false},
    {SQLITE_ERROR, At::Running, "", DatabaseFault::Expression, false},
    {SQLITE_CANTOPEN, At::Any, "", DatabaseFault::PermissionDenied, true},
    {SQLITE_PERM, At::Any, "", DatabaseFault::PermissionDenied, true},
    {SQLITE_AUTH, At::Any, "", DatabaseFault::PermissionDenied, false},
    {SQLITE_NOTADB, At::Any, "", DatabaseFault::NotADatabase, true},
    {SQLITE_CORRUPT, At::Any, "", DatabaseFault::NotADatabase, true},
    {SQLITE_CONSTRAINT, At::Any, "", DatabaseFault::ConstraintViolated, false},
    {SQLITE_MISMATCH, At::Any, "", DatabaseFault::TypeMismatch, false},
    {SQLITE_BUSY, At::Any, "", DatabaseFault::Busy, true},
    {SQLITE_LOCKED, At::Any, "", DatabaseFault::Locked, true},
    {SQLITE_FULL, At::Any, "", DatabaseFault::DiskFull, true},
    {SQLITE_READONLY, At::Any, "", DatabaseFault::ReadOnlyDatabase, true},
    {SQLITE_IOERR, At::Any, "", DatabaseFault::DiskError, true},
    {SQLITE_INTERRUPT, At::Any, "", DatabaseFault::Interrupted, false},
    {SQLITE_TOOBIG, At::Any, "", DatabaseFault::TooLarge, false},
    {SQLITE_NOMEM, At::Any, "", DatabaseFault::OutOfResources, false},
};

struct SystemRow {
  int error;
  int number;
};

constexpr SystemRow kSystemRows[] = {
    {EEXIST, DatabaseFault::DatabaseExists},   {ENOENT, DatabaseFault::InvalidPath},
    {ENOTDIR, DatabaseFault::InvalidPath},     {ENAMETOOLONG, DatabaseFault::InvalidPath},
    {EISDIR, DatabaseFault::InvalidPath},      {EINVAL, DatabaseFault::InvalidPath},
    {EACCES, DatabaseFault::PermissionDenied}, {EPERM, DatabaseFault::PermissionDenied},
    {EROFS, DatabaseFault::PermissionDenied},  {ENOSPC, DatabaseFault::DiskFull},
    {EDQUOT, DatabaseFault::DiskFull},         {EFBIG, DatabaseFault::DiskFull},
    {EMFILE, DatabaseFault::OutOfResources},   {ENFILE, DatabaseFault::OutOfResources},
};

int NumberOf(int error) {
  for (const SystemRow& row : kSystemRows) {
    if (row.error == error) return row.number;
  }
  return DatabaseFault::DiskError;
}

}  // namespace

RunTimeError EngineFault(sqlite3* database, int result, Stage stage, const std::string& path) {
  std::string sentence = database ? sqlite3_errmsg(database) : sqlite3_errstr(result);
  const int primary = result & 0xFF;
  if (result == SQLITE_IOERR_WRITE && database) {
    // A full quota is that to the engine too, and what undoes the change may already have cleared the system's number.
    const int error = sqlite3_system_errno(database);
    if (error == 0 || NumberOf(error) == DatabaseFault::DiskFull) {
      return {DatabaseFault::DiskFull, sentence + ": the disk or its quota may be full: " + path};
    }
  }
  const At at = stage == Stage::Preparing ? At::Preparing : At::Running;
  for (const Row& row : kRows) {
    if (row.result != primary || (row.at != At::Any && row.at != at)) continue;
    if (sentence.find(row.holds) == std::string::npos) continue;
    return {row.number, row.namesFile ? sentence + ": " + path : sentence};
  }
  return {DatabaseFault::Other, sentence + ": " + path};
}

RunTimeError SystemFault(int error, const std::string& what, const std::string& path) {
  return {NumberOf(error), what + ": " + std::strerror(error) + ": " + path};
}
