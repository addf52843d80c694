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
  Kept,     ///< it is loaded and saved as it stands; the rule that would use it does without
  Replaced  ///< the default is taken
};

/// One field of a settings file: everything there is to know of it for reading, writing and restoring it.
struct CfgFieldRow {
  std::string_view name;  ///< the table, as faults name it
  CfgCell (*cell)(Tables& tables, int number, int row);
  CfgDefault standard = {};
  std::int32_t low = std::numeric_limits<std::int32_t>::min();  ///< least and greatest number that can be used
  std::int32_t high = std::numeric_limits<std::int32_t>::max();
  OutOfRange outOfRange = OutOfRange::Kept;
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

/// A number of a file that is outside its range, and the cell that holds the default instead.
struct RefusedNumber {
  const std::int32_t* cell;
  std::int32_t found;
};

/// Values read from a file, held back until the whole file has been found good: a damaged file changes nothing.
class CfgRecord {
 public:
  /// Texts are cut to `longestText` bytes, between two characters.
  explicit CfgRecord(std::size_t longestText = std::string::npos) : longestText_(longestText) {}

  /// Reads one line of fields. `number` is the channel or protocol, `row` the row of a table with rows.
  /// Raises what `CfgReader` raises.
  void Read(CfgReader& reader, CfgLine line, Tables& tables, int number = 0, int row = 0);
  /// Forgets what was read.
  void Clear();
  /// What is not used as it stands, with file, line and field: numbers outside their range, texts cut.
  const std::vector<std::string>& Remarks() const { return remarks_; }
  const std::vector<RefusedNumber>& Refused() const { return refused_; }
  /// Puts all that was read into the tables.
  void Commit();

 private:
  using Value = std::variant<std::int32_t, Boolean, std::string>;
  std::int32_t Number(CfgReader& reader, const CfgFieldRow& field, const std::int32_t* cell);
  std::int32_t OutsideRange(const CfgFieldRow& field, const std::string& found, std::int32_t number);
  std::string Text(CfgReader& reader, const CfgFieldRow& field);

  struct Held {
    CfgCell cell;
    Value value;
  };
  std::size_t longestText_;
  std::vector<Held> held_;
  std::vector<std::string> remarks_;
  std::vector<RefusedNumber> refused_;
};

/// Writes the settings as one line. A refused number stays where it stood as long as its cell holds the default.
void WriteCfgLine(CfgWriter& writer, CfgLine line, Tables& tables, int number = 0, int row = 0,
                  std::span<const RefusedNumber> refused = {});

/// Puts the defaults into the tables.
void RestoreCfgDefaults(CfgLine line, Tables& tables, int number = 0);
