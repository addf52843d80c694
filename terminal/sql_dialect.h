#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>

/// The dialect that terminals' programs write their statements in, as far as it differs from that of the engine behind
/// it: rules that rewrite a statement, and functions that the engine is to have.

/// The statement as the engine takes it. Text in quotes or brackets and comments stay as they are, and a statement that
/// no rule touches goes through unchanged. Raises nothing.
std::string RewriteStatement(std::string_view statement);

/// A value of a statement: nothing for null.
using SqlValue = std::variant<std::monostate, std::int64_t, double, std::string>;

/// A function of the dialect.
struct SqlFunction {
  const char* name;
  int leastArguments, mostArguments;
  SqlValue (*call)(std::span<const SqlValue> arguments);
};

std::span<const SqlFunction> SqlFunctions();

/// Whether a text is like a pattern, in any case of ASCII letters. A pattern that holds any of `*`, `?`, `#` and `[` is
/// of the dialect: any characters, one character, one digit, one of a list ("[a-z]", "[!0-9]"). In any other, `%` and
/// `_` are any characters and one character, and what stands behind `escape` is meant as it stands.
bool IsLike(std::string_view text, std::string_view pattern, std::string_view escape = {});
