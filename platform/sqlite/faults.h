#pragma once

#include <string>

#include "platform/run_time_error.h"

struct sqlite3;

/// Numbers of database faults, as clients of the old engine know them. What the engine's results become is the table of
/// faults.cpp.
namespace DatabaseFault {
inline constexpr int Expression = 2450;  ///< an expression that failed while it ran
inline constexpr int Other = 3000;       ///< a result that no row of the table tells
inline constexpr int TableExists = 3010;
inline constexpr int ConstraintViolated = 3022;  ///< also uniqueness
inline constexpr int FileNotFound = 3024;
inline constexpr int DiskFull = 3026;
inline constexpr int ReadOnlyDatabase = 3027;
inline constexpr int Transaction = 3034;     ///< begun twice, or ended without a beginning
inline constexpr int OutOfResources = 3035;  ///< memory, threads
inline constexpr int DiskError = 3043;
inline constexpr int InvalidPath = 3044;
inline constexpr int PermissionDenied = 3051;
inline constexpr int Interrupted = 3059;
inline constexpr int NoSuchColumn = 3061;
inline constexpr int SelectNotExecutable = 3065;
inline constexpr int SyntaxError = 3075;
inline constexpr int NoSuchTable = 3078;
inline constexpr int NoSuchFunction = 3085;
inline constexpr int TooLarge = 3163;
inline constexpr int DatabaseExists = 3204;
inline constexpr int Busy = 3260;
inline constexpr int Locked = 3262;
inline constexpr int NotADatabase = 3343;  ///< also a damaged one
inline constexpr int NotOpen = 3420;
inline constexpr int TypeMismatch = 3464;
}  // namespace DatabaseFault

/// Where a statement was when it failed.
enum class Stage { Preparing, Running };

/// The fault that a result of the engine is, with the engine's sentence, and the file's name where that helps.
RunTimeError EngineFault(sqlite3* database, int result, Stage stage, const std::string& path);

/// The fault that an error of the system is at the making or finding of a database file.
RunTimeError SystemFault(int error, const std::string& what, const std::string& path);
