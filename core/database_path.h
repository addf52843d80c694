#pragma once

#include <filesystem>
#include <string>

#include "core/tables.h"

/// Full path of a database as a client or the file of rights names it: a relative name is looked for in the program's
/// folder.
inline std::string FullDatabasePath(const Tables& tables, const std::string& name) {
  return (std::filesystem::path(tables.ProgramFolder) / name).lexically_normal().string();
}
