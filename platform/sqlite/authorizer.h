#pragma once

#include <string>

struct sqlite3;

/// From now on a statement may touch the named database alone, and what shapes a connection is left as it is: ATTACH,
/// DETACH, VACUUM (which attaches), load_extension and every PRAGMA that does not just read are refused with
/// SQLITE_AUTH. `refused` is told what was, as people know it.
void Authorize(sqlite3* database, std::string& refused);
