#pragma once

#include <string>

#include "platform/run_time_error.h"

struct sqlite3;

/// Numbers of the database faults that this adapter itself raises.
namespace DatabaseFaultNumber {
inline constexpr int FileNotFound = 3024;
inline constexpr int PathNotValid = 3044;
inline constexpr int PermissionDenied = 3051;
inline constexpr int Interrupted = 3059;
inline constexpr int NoResultAllowed = 3065;
inline constexpr int TextBehindStatement = 3142;
inline constexpr int DatabaseExists = 3204;
}  // namespace DatabaseFaultNumber

/// When a statement failed: an error that is the same for the engine means another thing to its client.
enum class Stage { Preparing, Running };

/// The last failure of `database`, under its number of the three ranges of database faults and in the engine's words.
RunTimeError FaultOf(sqlite3* database, Stage stage);
