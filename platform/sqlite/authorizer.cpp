#include "platform/sqlite/authorizer.h"

#include <sqlite3.h>

#include <algorithm>
#include <string_view>

#include "protocol/number.h"

namespace {

/// They read, whatever stands behind them.
constexpr std::string_view kReading[] = {"TABLE_INFO",        "TABLE_XINFO",    "TABLE_LIST",  "INDEX_LIST",
                                         "INDEX_INFO",        "INDEX_XINFO",    "QUICK_CHECK", "FOREIGN_KEY_LIST",
                                         "FOREIGN_KEY_CHECK", "INTEGRITY_CHECK"};
/// They read if nothing stands behind them.
constexpr std::string_view kReadingAlone[] = {"APPLICATION_ID", "COLLATION_LIST", "DATA_VERSION", "ENCODING",
                                              "FOREIGN_KEYS",   "FREELIST_COUNT", "JOURNAL_MODE", "PAGE_COUNT",
                                              "PAGE_SIZE",      "SCHEMA_VERSION", "USER_VERSION"};

int Decide(void* refused, int action, const char* first, const char* second, const char*, const char*) {
  const std::string name = UpperCase(first ? first : "");
  std::string what;
  switch (action) {
    case SQLITE_ATTACH:
      what = "ATTACH";
      break;
    case SQLITE_DETACH:
      what = "DETACH";
      break;
    case SQLITE_PRAGMA: {
      const bool reads = std::find(std::begin(kReading), std::end(kReading), name) != std::end(kReading);
      const bool readsAlone =
          !second && std::find(std::begin(kReadingAlone), std::end(kReadingAlone), name) != std::end(kReadingAlone);
      if (!reads && !readsAlone) what = "PRAGMA " + name;
      break;
    }
    case SQLITE_FUNCTION:
      if (second && UpperCase(second) == "LOAD_EXTENSION") what = "load_extension";
      break;
    default:
      break;
  }
  if (what.empty()) return SQLITE_OK;
  *static_cast<std::string*>(refused) = what;
  return SQLITE_DENY;
}

}  // namespace

void Authorize(sqlite3* database, std::string& refused) { sqlite3_set_authorizer(database, Decide, &refused); }
