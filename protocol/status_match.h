#pragma once

#include <string_view>

#include "protocol/status_table.h"

/// Whether a row of a status table is found in a stream.

/// Byte of a bit row. A stream too short for the field reads as a zero byte; a length cell of 0 reads one
/// character, as 1 does.
inline int FieldByte(std::string_view stream, const StatusRule& rule) {
  const int size = static_cast<int>(stream.size());
  if (rule.position < 1 || rule.position > size || size < rule.position + rule.length) return 0;
  return static_cast<unsigned char>(stream[static_cast<std::size_t>(rule.position - 1)]);
}

/// One character more than the field needs is demanded: a field that ends with the stream does not match.
inline bool LongEnough(std::string_view stream, const StatusRule& rule) {
  return static_cast<int>(stream.size()) >= rule.position + rule.length;
}

inline std::string_view FieldText(std::string_view stream, const StatusRule& rule) {
  if (rule.position < 1) return {};
  return stream.substr(static_cast<std::size_t>(rule.position - 1), static_cast<std::size_t>(rule.length));
}

/// True if the enabled row `row` of `table`, whose rule is `rule`, matches.
inline bool RowMatches(const StatusTable& table, int row, const StatusRule& rule, std::string_view stream) {
  if (!rule.text) return (FieldByte(stream, rule) & rule.fieldMask) == rule.expected;
  if (!LongEnough(stream, rule)) return false;
  return rule.unconditional || FieldText(stream, rule) == table.Text(row, 4);
}
