#include "platform/sqlite/functions.h"

#include <sqlite3.h>

#include <new>
#include <string>

#include "platform/run_time_error.h"

namespace {

SqlValue Take(sqlite3_value* value) {
  switch (sqlite3_value_type(value)) {
    case SQLITE_NULL:
      return {};
    case SQLITE_INTEGER:
      return std::int64_t{sqlite3_value_int64(value)};
    case SQLITE_FLOAT:
      return sqlite3_value_double(value);
    default: {  // bytes that are no text are taken as text, as the engine's own functions do
      const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
      const auto size = static_cast<std::size_t>(sqlite3_value_bytes(value));
      if (!text && size > 0) throw std::bad_alloc();
      return text ? std::string(text, size) : std::string();
    }
  }
}

struct Giver {
  sqlite3_context* context;

  void operator()(std::monostate) const { sqlite3_result_null(context); }
  void operator()(std::int64_t value) const { sqlite3_result_int64(context, value); }
  void operator()(double value) const { sqlite3_result_double(context, value); }
  void operator()(const std::string& value) const {
    sqlite3_result_text64(context, value.data(), value.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
  }
};

void Call(sqlite3_context* context, int count, sqlite3_value** values) {
  const auto& entry = *static_cast<const RegisteredFunctions::Entry*>(sqlite3_user_data(context));
  try {
    std::vector<SqlValue> arguments;
    for (int at = 0; at < count; ++at) arguments.push_back(Take(values[at]));
    std::visit(Giver{context}, entry.function->call(arguments, *entry.surroundings));
  } catch (const RunTimeError& fault) {
    sqlite3_result_error(context, fault.Description().c_str(), -1);
  } catch (const std::bad_alloc&) {
    sqlite3_result_error_nomem(context);
  }
}

}  // namespace

RegisteredFunctions::RegisteredFunctions(const SqlSurroundings& surroundings) {
  for (const SqlFunction& function : SqlFunctions()) entries_.push_back({&function, &surroundings});
}

bool RegisteredFunctions::Register(sqlite3* database) const {
  for (const Entry& entry : entries_) {
    const SqlFunction& function = *entry.function;
    const bool any = function.mostArguments < 0;
    // The exact counts leave the engine's own function of that name its other forms: date('now').
    for (int count = any ? -1 : function.leastArguments; count <= function.mostArguments; ++count) {
      const int flags = SQLITE_UTF8 | SQLITE_INNOCUOUS | (function.constant ? SQLITE_DETERMINISTIC : 0);
      void* self = const_cast<Entry*>(&entry);
      if (sqlite3_create_function(database, function.name, count, flags, self, Call, nullptr, nullptr) != SQLITE_OK) {
        return false;
      }
    }
  }
  return true;
}
