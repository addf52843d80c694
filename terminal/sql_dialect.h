#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

// The programs of the terminals write their statements in the dialect of the desktop database that they were made for.
// What of it can be kept cheaply is kept in two ways: rules rewrite a statement before it goes to the engine, and
// functions are registered with the engine under the names of that dialect.
//
// Rewritten, outside quotes and comments:
//   #12/31/2026#, #2026-12-31 10:00#   '2026-12-31', '2026-12-31 10:00:00'
//   True, False                        (-1), 0
//   Left(a, 2), Mid$(a, 2)             [Left](a, 2), Mid(a, 2)
//   DELETE * FROM t                    DELETE FROM t
//   a & b                              tarvex_join(a, b)
//   SELECT TOP 3 a FROM t              SELECT a FROM t LIMIT 3
//   SELECT a INTO t FROM s             CREATE TABLE t AS SELECT a FROM s
//
// Not kept: dates with names of months, TOP n PERCENT and the records that are equal to the last one of TOP n, INTO a
// table of another file. They are faults of the engine, but for the equal records, which are left out.

/// The statement in the dialect of the engine. One that no rule touches is returned byte for byte. Raises nothing; the
/// time it takes grows with the statement's length and no faster.
std::string TranslateSql(std::string_view statement);

/// Date, time or both as `yyyy-mm-dd`, `hh:mm:ss`, `yyyy-mm-dd hh:mm:ss`; nothing if it is none. Taken are
/// month/day/year, month-day-year, year-month-day and h:mm[:ss] [AM|PM]; two digits of a year are 1930 to 2029.
std::optional<std::string> SqlDateText(std::string_view text);

/// A value as functions take and return it: null, integer, real, text.
using SqlValue = std::variant<std::monostate, std::int64_t, double, std::string>;

/// The value as text: null is empty, a real has at most 15 digits.
std::string SqlText(const SqlValue& value);

/// What functions ask of the engine that calls them.
class SqlSurroundings {
 public:
  virtual ~SqlSurroundings() = default;
  /// Local date and time, `yyyy-mm-dd hh:mm:ss`.
  virtual std::string LocalTime() const = 0;
  /// Whether the statement is to end: a long comparison gives up then.
  virtual bool Stopped() const = 0;
};

/// A function of the old dialect. Names are told apart without regard to case.
struct SqlFunction {
  const char* name;
  int leastArguments;
  int mostArguments;  ///< -1: as many as the engine takes
  bool constant;      ///< the same arguments give the same result
  /// Raises 5 for an argument that the function cannot use.
  SqlValue (*call)(const std::vector<SqlValue>& arguments, const SqlSurroundings& surroundings);
};

/// All of them. IIf, Trim, Abs, InStr and the sums are the engine's own.
std::span<const SqlFunction> SqlFunctions();
