#include "platform/sqlite/sqlite_faults.h"

#include <sqlite3.h>

#include <cerrno>
#include <string_view>

namespace {

struct Row {
  int code;               ///< of the engine
  std::string_view text;  ///< that its sentence has to hold; empty for any
  int preparing, running;
};

constexpr int kExpressionFailed = 2450;

/// The first row that fits counts. 2400 to 2499 are expressions that fail, 3000 to 3999 everything else.
constexpr Row kRows[] = {
    {SQLITE_ERROR, "no such table", 3078, 3078},
    {SQLITE_ERROR, "no such view", 3078, 3078},
    {SQLITE_ERROR, "no such column", 3061, 3061},
    {SQLITE_ERROR, "has no column named", 3061, 3061},
    {SQLITE_ERROR, "no such function", 3085, 3085},
    {SQLITE_ERROR, "already exists", 3010, 3010},
    {SQLITE_ERROR, "not authorized", 3051, 3051},
    {SQLITE_ERROR, "", 3075, kExpressionFailed},
    {SQLITE_AUTH, "", 3051, 3051},
    {SQLITE_PERM, "", 3051, 3051},
    {SQLITE_BUSY, "", 3260, 3260},
    {SQLITE_LOCKED, "", 3262, 3262},
    {SQLITE_NOMEM, "", 3035, 3035},
    {SQLITE_READONLY, "", 3027, 3027},
    {SQLITE_INTERRUPT, "", 3059, 3059},
    {SQLITE_IOERR, "", 3043, 3043},
    {SQLITE_CORRUPT, "", 3343, 3343},
    {SQLITE_NOTADB, "", 3343, 3343},
    {SQLITE_FULL, "", 3026, 3026},
    {SQLITE_CANTOPEN, "", 3051, 3051},
    {SQLITE_TOOBIG, "", 3163, 3163},
    {SQLITE_CONSTRAINT, "", 3022, 3022},
    {SQLITE_MISMATCH, "", 3421, 3421},
};
constexpr int kReserved = 3000;

}  // namespace

RunTimeError FaultOf(sqlite3* database, Stage stage) {
  const int error = sqlite3_system_errno(database);
  const bool noRoom = error == ENOSPC || error == EDQUOT || error == EFBIG;
  const int reported = sqlite3_errcode(database) & 0xFF;
  const int code = reported == SQLITE_IOERR && noRoom ? SQLITE_FULL : reported;
  const std::string sentence = sqlite3_errmsg(database);
  for (const Row& row : kRows) {
    if (row.code != code || sentence.find(row.text) == std::string::npos) continue;
    return {stage == Stage::Preparing ? row.preparing : row.running, sentence};
  }
  return {kReserved, sentence};
}
