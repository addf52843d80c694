#include "terminal/database_rights.h"

#include <algorithm>

#include "core/database_path.h"
#include "core/fixed_tables.h"
#include "core/tables.h"

namespace {

constexpr int kPermissionDenied = 3051;

[[noreturn]] void Refuse(int ch, const char* what, const std::string& path) {
  throw RunTimeError(kPermissionDenied, "Permission denied: channel " + DisplayNumber(ch) + " may not " + what + " " +
                                            path + " by Tarvex-Database.Cfg");
}

bool May(const Tables& tables, int ch, const std::string& path, bool write) {
  if (tables.DatabaseRightsSet == False) return true;
  return std::any_of(tables.DatabaseRights.begin(), tables.DatabaseRights.end(), [&](const DatabaseRight& right) {
    return right.ch == ch && right.path == path && (right.write || !write);
  });
}

}  // namespace

DatabaseFile DatabaseToRead(const Tables& tables, int ch, const std::string& name) {
  const std::string path = FullDatabasePath(tables, name);
  if (!May(tables, ch, path, false)) Refuse(ch, "read", path);
  return {path, !May(tables, ch, path, true)};
}

std::string DatabaseToWrite(const Tables& tables, int ch, const std::string& name) {
  const std::string path = FullDatabasePath(tables, name);
  if (!May(tables, ch, path, true)) Refuse(ch, "write", path);
  return path;
}
