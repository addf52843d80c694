#include "protocol/status_table.h"

#include <string_view>
#include <utility>

#include "core/table.h"
#include "protocol/number.h"

namespace {

/// Where the two kinds of row, by the length of their field, understand the same DDE field.
enum class Path : std::uint8_t { Byte, Both };

struct Meaning {
  std::string_view field;  ///< column 1, upper case
  std::string_view name;   ///< column 0, exact
  StatusAction action;
  std::int16_t value;
  Path path;
};

constexpr Meaning kMeanings[] = {
    {"1 / MOTION", "Motion", StatusAction::MotionOn, 0, Path::Both},
    {"1 / MOTION", "Stable", StatusAction::MotionOff, 0, Path::Both},
    {"2 / MODE", "Gross Mode", StatusAction::GrossMode, 0, Path::Both},
    {"2 / MODE", "Net Mode", StatusAction::NetMode, 0, Path::Both},
    {"3 / UNITS", "LB", StatusAction::UnitsPounds, 0, Path::Both},
    {"3 / UNITS", "KG", StatusAction::Units, 0, Path::Both},
    {"3 / UNITS", "Grams", StatusAction::Units, 0, Path::Both},
    {"3 / UNITS", "Metric Tons", StatusAction::Units, 0, Path::Both},
    {"3 / UNITS", "Ounces", StatusAction::Units, 0, Path::Both},
    {"3 / UNITS", "Troy Ounces", StatusAction::Units, 0, Path::Both},
    {"3 / UNITS", "Penny Weight", StatusAction::Units, 0, Path::Both},
    {"3 / UNITS", "Tons", StatusAction::Units, 0, Path::Both},
    {"3 / UNITS", "Custom Units", StatusAction::Units, 0, Path::Both},  // not the "Custom Units1" of the setup list
    {"(WEIGHT)", "Decimal Place XXXX00", StatusAction::DecimalPlace, 2, Path::Byte},
    {"(WEIGHT)", "Decimal Place XXXXX0", StatusAction::DecimalPlace, 1, Path::Byte},
    {"(WEIGHT)", "Decimal Place XXXXXX", StatusAction::DecimalPlace, 0, Path::Byte},
    {"(WEIGHT)", "Decimal Place XXXXX.X", StatusAction::DecimalPlace, -1, Path::Byte},
    {"(WEIGHT)", "Decimal Place XXXX.XX", StatusAction::DecimalPlace, -2, Path::Byte},
    {"(WEIGHT)", "Decimal Place XXX.XXX", StatusAction::DecimalPlace, -3, Path::Byte},
    {"(WEIGHT)", "Decimal Place XX.XXXX", StatusAction::DecimalPlace, -4, Path::Byte},
    {"(WEIGHT)", "Decimal Place X.XXXXX", StatusAction::DecimalPlace, -5, Path::Byte},
    {"(WEIGHT)", "Polarity Sign Positive +", StatusAction::Polarity, '+', Path::Byte},
    {"(WEIGHT)", "Polarity Sign Negative -", StatusAction::Polarity, '-', Path::Byte},
};

/// DDE fields whose rows act whatever their name is.
constexpr Meaning kAnyName[] = {
    {"4 / STATUS1", {}, StatusAction::StatusField, 1, Path::Byte},
    {"STATUS2", {}, StatusAction::StatusField, 2, Path::Byte},
    {"STATUS3", {}, StatusAction::StatusField, 3, Path::Byte},
    {"STATUS4", {}, StatusAction::StatusField, 4, Path::Byte},
    {"STATUS5", {}, StatusAction::StatusField, 5, Path::Byte},
    {"STATUS6", {}, StatusAction::StatusField, 6, Path::Byte},
    {"STATUS7", {}, StatusAction::StatusField, 7, Path::Byte},
    {"STATUS8", {}, StatusAction::StatusField, 8, Path::Byte},
    {"STATUS9", {}, StatusAction::StatusField, 9, Path::Byte},
};

/// Fields in which a text row with a name that means nothing does nothing; in any other field it is remembered.
constexpr std::string_view kKnownFields[] = {"1 / MOTION", "2 / MODE", "3 / UNITS", "0 / ERROR"};

/// Names that count as matched without a comparison. The setup list does not offer them.
constexpr std::string_view kUnconditionalNames[] = {"=> GROSS", "<= GROSS", "=> NET", "<= NET"};

template <std::size_t N>
bool Contains(const std::string_view (&list)[N], std::string_view text) {
  for (std::string_view entry : list) {
    if (entry == text) return true;
  }
  return false;
}

/// Position or length cell: a number, and for a partial field "b" and a digit, as in "3b4".
struct PartialCell {
  int number;
  int bits;
};

PartialCell ReadPartial(std::string_view cell, int bitsWithoutB) {
  const std::size_t mark = cell.find('b');
  if (mark == std::string_view::npos) return {WholeNumber(cell), bitsWithoutB};
  return {WholeNumber(cell.substr(0, mark)), WholeNumber(cell.substr(cell.size() - 1))};
}

std::uint8_t FieldMask(int firstBit, int width) {
  unsigned mask = 255;
  for (int bit = 0; bit < 8; ++bit) {
    if (bit < firstBit || bit > firstBit - 1 + width) mask &= ~(1U << bit);
  }
  return static_cast<std::uint8_t>(mask);
}

std::int32_t ExpectedByte(std::string_view cell) {
  const double value = NumericValue(cell);
  const bool possible = value >= 0 && value <= 255 && value == static_cast<double>(static_cast<int>(value));
  return possible ? static_cast<std::int32_t>(value) : -1;
}

void FindAction(StatusRule& rule, std::string_view name, std::string_view field) {
  if (field == "0 / ERROR") {
    rule.action = name == "Out Of Range" ? StatusAction::ErrorOutOfRange : StatusAction::Error;
    return;
  }
  for (const Meaning& meaning : kMeanings) {
    if (meaning.field != field || meaning.name != name) continue;
    if (rule.text && meaning.path == Path::Byte) continue;
    rule.action = meaning.action;
    rule.value = meaning.value;
    if (meaning.action == StatusAction::Polarity) rule.name = static_cast<char>(meaning.value);
    return;
  }
  if (rule.text) {
    rule.action = Contains(kKnownFields, field) ? StatusAction::None : StatusAction::Match;
    return;
  }
  for (const Meaning& meaning : kAnyName) {
    if (meaning.field != field) continue;
    rule.action = meaning.action;
    rule.value = meaning.value;
    return;
  }
}

}  // namespace

const std::optional<std::string>& StatusTable::Cell(int row, int column) const {
  if (row < 0 || row >= kRows || column < 0 || column >= kColumns) RaiseSubscriptOutOfRange();
  return cells_[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
}

const std::string& StatusTable::Text(int row, int column) const {
  static const std::string kUnset;
  const std::optional<std::string>& cell = Cell(row, column);
  return cell ? *cell : kUnset;
}

void StatusTable::SetCell(int row, int column, std::optional<std::string> text) {
  if (row < 0 || row >= kRows || column < 0 || column >= kColumns) RaiseSubscriptOutOfRange();
  cells_[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)] = std::move(text);

  StatusRule& rule = rules_[static_cast<std::size_t>(row)];
  rule = StatusRule{};
  rule.enabled = Text(row, 5) == "X";
  if (!rule.enabled) return;

  const PartialCell position = ReadPartial(Text(row, 2), 0);
  const PartialCell length = ReadPartial(Text(row, 3), 7);
  rule.position = position.number;
  rule.length = length.number;
  rule.text = length.number >= 2;
  rule.name = UpperCase(Text(row, 0));
  if (rule.text && Contains(kUnconditionalNames, rule.name)) {
    rule.unconditional = true;
    rule.action = StatusAction::Match;
    return;
  }
  rule.fieldMask = FieldMask(position.bits, length.bits);
  rule.expected = ExpectedByte(Text(row, 4));
  FindAction(rule, Text(row, 0), UpperCase(Text(row, 1)));
}

void StatusTable::Clear() {
  for (int row = 0; row < kFileRows; ++row) {
    for (int column = 0; column < kFileColumns; ++column) {
      cells_[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)] = "";
    }
    rules_[static_cast<std::size_t>(row)] = StatusRule{};
  }
}

const StatusRule& StatusTable::Rule(int row) const {
  if (row < 0 || row >= kRows) RaiseSubscriptOutOfRange();
  return rules_[static_cast<std::size_t>(row)];
}
