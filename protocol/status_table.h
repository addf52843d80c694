#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

/// What a matched row of a status table does.
enum class StatusAction : std::uint8_t {
  None,
  MotionOn,
  MotionOff,
  GrossMode,
  NetMode,
  Units,
  UnitsPounds,
  Error,
  ErrorOutOfRange,
  DecimalPlace,  ///< `value` is the decimal code
  Polarity,      ///< `name` is the sign
  StatusField,   ///< `value` is the row of `ChanStatusN`
  Match,         ///< remembered in `ChanMatchName` and `ChanMatchField`, no other use
};

/// One row of a status table, turned into numbers.
struct StatusRule {
  bool enabled = false;
  bool text = false;           ///< several characters compared as text; otherwise one byte compared under a mask
  bool unconditional = false;  ///< text row that counts as matched as soon as the stream is long enough
  StatusAction action = StatusAction::None;
  std::uint8_t fieldMask = 0;  ///< bits of the byte that take part
  std::int16_t value = 0;
  std::int32_t expected = 0;  ///< value of the masked byte; -1 if no byte can equal the cell
  std::int32_t position = 0;  ///< from 1
  std::int32_t length = 0;
  std::string name;  ///< upper-case name, or the sign of a polarity row
};

/// Status table of one protocol: 101 rows of 8 text cells, of which columns 0 to 5 are used (name, DDE field,
/// position, length, mask, enable). Writing a cell turns its row into numbers at once, so that the numbers
/// can never be older than the text.
class StatusTable {
 public:
  static constexpr int kRows = 101;
  static constexpr int kColumns = 8;
  static constexpr int kFileRows = 100;   ///< rows that are read, written and cleared
  static constexpr int kFileColumns = 6;  ///< columns that are read, written and cleared

  /// The cell as it stands; a cell never set is told from an empty one. Raises 9 outside the table.
  const std::optional<std::string>& Cell(int row, int column) const;
  /// Text of a cell, empty if never set. Raises 9 outside the table.
  const std::string& Text(int row, int column) const;
  /// Raises 9 outside the table.
  void SetCell(int row, int column, std::optional<std::string> text);
  /// Sets rows 0 to 99, columns 0 to 5 to the empty string.
  void Clear();

  /// The row in numbers. Raises 9 outside the table.
  const StatusRule& Rule(int row) const;

 private:
  using Row = std::array<std::optional<std::string>, kColumns>;

  std::array<Row, kRows> cells_;
  std::array<StatusRule, kRows> rules_;
};
