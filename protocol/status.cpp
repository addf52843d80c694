#include "protocol/status.h"

#include "core/tables.h"

namespace {

/// Byte of a bit row. A stream too short for the field reads as a zero byte; a length cell of 0 reads one
/// character, as 1 does.
int FieldByte(std::string_view stream, const StatusRule& rule) {
  const int size = static_cast<int>(stream.size());
  if (rule.position < 1 || rule.position > size || size < rule.position + rule.length) return 0;
  return static_cast<unsigned char>(stream[static_cast<std::size_t>(rule.position - 1)]);
}

/// One character more than the field needs is demanded: a field that ends with the stream does not match.
bool LongEnough(std::string_view stream, const StatusRule& rule) {
  return static_cast<int>(stream.size()) >= rule.position + rule.length;
}

std::string_view FieldText(std::string_view stream, const StatusRule& rule) {
  if (rule.position < 1) return {};
  return stream.substr(static_cast<std::size_t>(rule.position - 1), static_cast<std::size_t>(rule.length));
}

void AddStatusBit(Tables& tables, int ch, std::int16_t bit) {
  tables.ChanStatusBits[ch] = static_cast<std::int16_t>(tables.ChanStatusBits[ch] | bit);
}

void Apply(Tables& tables, const StatusRule& rule, int row, int ch, int proto, bool& unitsFound) {
  switch (rule.action) {
    case StatusAction::None:
      break;
    case StatusAction::MotionOn:
      tables.ChanMotion[ch] = True;
      AddStatusBit(tables, ch, StatusBit::Motion);
      break;
    case StatusAction::MotionOff:
      tables.ChanMotion[ch] = False;
      break;
    case StatusAction::GrossMode:
      tables.ChanMode[ch] = "GROSS";
      break;
    case StatusAction::NetMode:
      tables.ChanMode[ch] = "NET";
      AddStatusBit(tables, ch, StatusBit::NetMode);
      break;
    case StatusAction::Units:
    case StatusAction::UnitsPounds:
      if (unitsFound) break;
      unitsFound = true;
      tables.ChanUnits[ch] = rule.name;
      if (rule.action == StatusAction::UnitsPounds) AddStatusBit(tables, ch, StatusBit::Pounds);
      break;
    case StatusAction::Error:
    case StatusAction::ErrorOutOfRange:
      tables.ChanError[ch] = rule.name;
      if (rule.action == StatusAction::ErrorOutOfRange) AddStatusBit(tables, ch, StatusBit::OutOfRange);
      break;
    case StatusAction::DecimalPlace:
      tables.ProtoDecimalCode[proto] = rule.value;
      tables.ChanDecimals[ch] = rule.value;
      tables.ChanDecimalsKnown[ch] = True;
      tables.ChanStatusDecimals[ch] = True;
      break;
    case StatusAction::Polarity:
      tables.ProtoPolarity[proto] = rule.name;
      break;
    case StatusAction::StatusField:
      tables.ChanStatusN[rule.value][ch] = rule.name;
      break;
    case StatusAction::Match:
      tables.ChanMatchName[ch] = rule.unconditional ? rule.name : tables.ProtoStatusTable[proto].Text(row, 0);
      tables.ChanMatchField[ch] = tables.ProtoStatusTable[proto].Text(row, 1);
      break;
  }
}

}  // namespace

void ParseStatusData(Tables& tables, std::string_view stream, int ch, int proto) {
  tables.ChanStatusBits[ch] = 0;
  bool unitsFound = false;
  const StatusTable& table = tables.ProtoStatusTable[proto];
  const int last = tables.ProtoStatusCount[proto];
  for (int row = 0; row <= last; ++row) {
    const StatusRule& rule = table.Rule(row);
    if (!rule.enabled) continue;
    if (rule.text) {
      if (!LongEnough(stream, rule)) continue;
      if (!rule.unconditional && FieldText(stream, rule) != table.Text(row, 4)) continue;
    } else if ((FieldByte(stream, rule) & rule.fieldMask) != rule.expected) {
      continue;
    }
    Apply(tables, rule, row, ch, proto, unitsFound);
  }
}
