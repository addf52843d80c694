#pragma once

#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "config/cfg_text.h"
#include "core/tables.h"

/// Where the tables keep a setting; its kind of text form follows from it.
using CfgCell = std::variant<std::int32_t*, Boolean*, std::string*>;

/// What a setting holds until somebody chooses. In a text `%F` is the program's folder and `%N` the display number
/// of the channel. Nothing: the setting keeps what it holds.
using CfgDefault = std::variant<std::monostate, std::int32_t, bool, std::string_view>;

/// What becomes of a number outside its range.
enum class OutOfRange {
  Refused,  ///< the whole file is: no other number could stand for it
  Replaced  ///< by the default; the rest of the file holds, and `CfgRecord::Remarks` tells it
};

/// One field of a settings file: everything there is to know of it for reading, writing and restoring it.
struct CfgFieldRow {
  std::string_view name;  ///< the table, as faults name it
  CfgCell (*cell)(Tables& tables, int number, int row);
  CfgDefault standard = {};
  std::int32_t low = std::numeric_limits<std::int32_t>::min();  ///< least and greatest number that is taken
  std::int32_t high = std::numeric_limits<std::int32_t>::max();
  OutOfRange outOfRange = OutOfRange::Refused;
};

using CfgLine = std::span<const CfgFieldRow>;

/// Cell of a setting there is once.
template <auto Member>
CfgCell Setting(Tables& tables, int, int) {
  return &(tables.*Member);
}

/// Cell of a setting there is once a channel or once a protocol.
template <auto Member>
CfgCell SettingOf(Tables& tables, int number, int) {
  return &(tables.*Member)[number];
}

/// Values read from a file, held back until the whole file has been found good: a damaged file changes nothing.
class CfgRecord {
 public:
  /// Texts are cut to `longestText` characters.
  explicit CfgRecord(std::size_t longestText = std::string::npos) : longestText_(longestText) {}

  /// Reads one line of fields. `number` is the channel or protocol, `row` the row of a table with rows.
  /// Raises what `CfgReader` raises, and 9 for a number outside the tables.
  void Read(CfgReader& reader, CfgLine line, Tables& tables, int number = 0, int row = 0);
  /// Forgets what was read.
  void Clear();
  /// What was not taken as it stands, with file, line and field: numbers replaced, texts cut.
  const std::vector<std::string>& Remarks() const { return remarks_; }
  /// Puts all that was read into the tables.
  void Commit();

 private:
  using Value = std::variant<std::int32_t, Boolean, std::string>;
  std::int32_t Number(CfgReader& reader, const CfgFieldRow& field);
  std::string Text(CfgReader& reader, const CfgFieldRow& field);

  struct Held {
    CfgCell cell;
    Value value;
  };
  std::size_t longestText_;
  std::vector<Held> held_;
  std::vector<std::string> remarks_;
};

/// Writes the settings as one line.
void WriteCfgLine(CfgWriter& writer, CfgLine line, Tables& tables, int number = 0, int row = 0);

/// Puts the defaults into the tables.
void RestoreCfgDefaults(CfgLine line, Tables& tables, int number = 0);
