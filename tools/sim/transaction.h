#pragma once

#include <string>

namespace sim {

/// One thing that a database client does, over and over with others.
struct Transaction {
  enum class Kind { Sql, Date, Lot, Test } kind = Kind::Sql;
  std::string text{};  ///< statement, or the number of days
};

}  // namespace sim
