#include "platform/sqlite/sqlite_functions.h"

#include <sqlite3.h>

#include <exception>
#include <string>
#include <vector>

#include "terminal/sql_dialect.h"

namespace {

std::string TextOf(sqlite3_value* value) {
  const auto* const text = reinterpret_cast<const char*>(sqlite3_value_text(value));
  return text == nullptr ? std::string() : std::string(text, static_cast<std::size_t>(sqlite3_value_bytes(value)));
}

SqlValue ValueOf(sqlite3_value* value) {
  switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER:
      return static_cast<std::int64_t>(sqlite3_value_int64(value));
    case SQLITE_FLOAT:
      return sqlite3_value_double(value);
    case SQLITE_NULL:
      return {};
    default:
      return TextOf(value);
  }
}

struct Return {
  sqlite3_context* context;

  void operator()(std::monostate) const { sqlite3_result_null(context); }
  void operator()(std::int64_t integer) const { sqlite3_result_int64(context, integer); }
  void operator()(double real) const { sqlite3_result_double(context, real); }
  void operator()(const std::string& text) const {
    sqlite3_result_text(context, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
  }
};

void Call(sqlite3_context* context, int count, sqlite3_value** values) {
  const auto& function = *static_cast<const SqlFunction*>(sqlite3_user_data(context));
  try {
    std::vector<SqlValue> arguments;
    for (int argument = 0; argument < count; ++argument) arguments.push_back(ValueOf(values[argument]));
    std::visit(Return{context}, function.call(arguments));
  } catch (const std::exception& fault) {
    sqlite3_result_error(context, (std::string(function.name) + ": " + fault.what()).c_str(), -1);
  }
}

/// The engine asks for "text LIKE pattern ESCAPE escape" with the pattern first.
void Like(sqlite3_context* context, int count, sqlite3_value** values) {
  if (sqlite3_value_type(values[0]) == SQLITE_NULL || sqlite3_value_type(values[1]) == SQLITE_NULL) return;
  const std::string escape = count > 2 ? TextOf(values[2]) : std::string();
  sqlite3_result_int(context, IsLike(TextOf(values[1]), TextOf(values[0]), escape) ? 1 : 0);
}

}  // namespace

void RegisterFunctions(sqlite3* database) {
  constexpr int kKind = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
  for (const SqlFunction& function : SqlFunctions()) {
    for (int count = function.leastArguments; count <= function.mostArguments; ++count) {
      sqlite3_create_function(database, function.name, count, kKind, const_cast<SqlFunction*>(&function), Call, nullptr,
                              nullptr);
    }
  }
  for (const int count : {2, 3}) {
    sqlite3_create_function(database, "like", count, kKind, nullptr, Like, nullptr, nullptr);
  }
}
