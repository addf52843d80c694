#pragma once

#include <vector>

#include "terminal/sql_dialect.h"

struct sqlite3;

/// The functions of the old dialect, as connections call them.
class RegisteredFunctions {
 public:
  /// `surroundings` has to outlive the connections.
  explicit RegisteredFunctions(const SqlSurroundings& surroundings);
  /// Makes them known to a connection, which this object has to outlive. False if there is no memory.
  bool Register(sqlite3* database) const;

  struct Entry {
    const SqlFunction* function;
    const SqlSurroundings* surroundings;
  };

 private:
  std::vector<Entry> entries_;
};
