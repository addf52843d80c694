#include "protocol/status.h"

#include "core/tables.h"
#include "protocol/status_match.h"

namespace {

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
    if (RowMatches(table, row, rule, stream)) Apply(tables, rule, row, ch, proto, unitsFound);
  }
}
