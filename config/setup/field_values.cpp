#include "config/setup/field_values.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <variant>
#include <vector>

#include "config/cfg_line.h"
#include "protocol/number.h"

namespace {

/// A field and the cell that it shows; what becomes of it follows from the kinds of both.
struct Link {
  FieldId field;
  CfgCell (*cell)(Tables& tables, int number, int row);
  int row = 0;
};

CfgCell OpcTag(Tables& tables, int ch, int row) { return &tables.ChanOpcTag[row][ch]; }

/// In the order in which a channel is loaded and saved.
constexpr Link kChannelLinks[] = {
    {{Control::cb, 0}, SettingOf<&Tables::ChanConnectUsing>},
    {{Control::cb, 1}, SettingOf<&Tables::ChanPort>},
    {{Control::cb, 2}, SettingOf<&Tables::ChanPortSetup>},
    {{Control::cb, 3}, SettingOf<&Tables::ChanProtocol>},
    {{Control::cb, 4}, SettingOf<&Tables::ChanDbDriver>},
    {{Control::cb, 5}, SettingOf<&Tables::ChanPrimaryUnits>},
    {{Control::cb, 6}, SettingOf<&Tables::ChanDecimalPlaces>},
    {{Control::ckXONXOFF}, SettingOf<&Tables::ChanXonXoff>},
    {{Control::ckEnableDevice}, SettingOf<&Tables::ChanEnabled>},
    {{Control::ckDDEServer}, SettingOf<&Tables::ChanDdeServer>},
    {{Control::ckOPC}, SettingOf<&Tables::ChanOpcEnabled>},
    {{Control::ckBidirectional}, SettingOf<&Tables::ChanBidirectional>},
    {{Control::ckPollForData}, SettingOf<&Tables::ChanPollForData>},
    {{Control::ckAsciiLogFile}, SettingOf<&Tables::ChanAsciiLog>},
    {{Control::ckUseLog}, SettingOf<&Tables::ChanAuditLog>},
    {{Control::ckInteractiveDBErrors}, SettingOf<&Tables::ChanInteractiveDbErrors>},
    {{Control::ckEnableVVant}, SettingOf<&Tables::ChanVirtualTerminal>},
    {{Control::ckDataMap}, SettingOf<&Tables::ChanDataMap>},
    {{Control::tDeviceDesc}, SettingOf<&Tables::ChanDeviceDesc>},
    {{Control::tDeviceID}, SettingOf<&Tables::ChanDeviceID>},
    {{Control::tTxDelay}, SettingOf<&Tables::ChanTxDelay>},
    {{Control::tRefresh}, SettingOf<&Tables::ChanRefresh>},
    {{Control::tTimeout}, SettingOf<&Tables::ChanTimeout>},
    {{Control::tAsciiLogFileName}, SettingOf<&Tables::ChanAsciiLogName>},
    {{Control::tOtherDriver}, SettingOf<&Tables::ChanOtherDriver>},
    {{Control::tNodeName}, SettingOf<&Tables::ChanOpcNodeName>},
    {{Control::tServerName}, SettingOf<&Tables::ChanOpcServerName>},
    {{Control::tOpcTag, 0}, OpcTag, 0},
    {{Control::tOpcTag, 1}, OpcTag, 1},
    {{Control::tOpcTag, 2}, OpcTag, 2},
    {{Control::tOpcTag, 3}, OpcTag, 3},
    {{Control::tOpcTag, 4}, OpcTag, 4},
    {{Control::tOpcTag, 5}, OpcTag, 5},
    {{Control::tOpcTag, 6}, OpcTag, 6},
};

constexpr Link kProtocolLinks[] = {
    {{Control::t, 0}, SettingOf<&Tables::ProtoGrossPos>},
    {{Control::t, 1}, SettingOf<&Tables::ProtoGrossLen>},
    {{Control::t, 2}, SettingOf<&Tables::ProtoTarePos>},
    {{Control::t, 3}, SettingOf<&Tables::ProtoTareLen>},
    {{Control::t, 4}, SettingOf<&Tables::ProtoNetPos>},
    {{Control::t, 5}, SettingOf<&Tables::ProtoNetLen>},
    {{Control::t, 6}, SettingOf<&Tables::ProtoIdPos>},
    {{Control::t, 7}, SettingOf<&Tables::ProtoIdLen>},
    {{Control::t, 8}, SettingOf<&Tables::ProtoStartChar>},
    {{Control::t, 9}, SettingOf<&Tables::ProtoTerminator>},
    {{Control::t, 10}, SettingOf<&Tables::ProtoMaxStream>},
    {{Control::tCmdStart}, SettingOf<&Tables::ProtoCmdStartChar>},
    {{Control::tCmdEnd}, SettingOf<&Tables::ProtoCmdTerminator>},
    {{Control::ck, 0}, SettingOf<&Tables::ProtoGrossEnable>},
    {{Control::ck, 1}, SettingOf<&Tables::ProtoTareEnable>},
    {{Control::ck, 2}, SettingOf<&Tables::ProtoNetEnable>},
    {{Control::ck, 3}, SettingOf<&Tables::ProtoIdEnable>},
};

constexpr int kLastStrictField = 7;  // of t: the positions and lengths

CfgCell CommandEnabled(Tables& tables, int proto, int command) { return &tables.ProtoCmdEnabled[command][proto]; }

template <int Kind>
CfgCell CommandText(Tables& tables, int proto, int command) {
  return &tables.ProtoCmdText[Kind][command][proto];
}

std::vector<Link> ProtocolLinks() {
  std::vector<Link> links(std::begin(kProtocolLinks), std::end(kProtocolLinks));
  for (int command = 0; command < kCommandRows; ++command) {
    links.push_back({{Control::ckCmd, command}, CommandEnabled, command});
    links.push_back({{Control::tCmd, command}, CommandText<0>, command});
    links.push_back({{Control::tCmdName, command}, CommandText<1>, command});
    links.push_back({{Control::tCmdValue, command}, CommandText<2>, command});
  }
  return links;
}

[[noreturn]] void Refuse(int number, const SetupField& field, const std::string& reason) {
  std::string captions(field.row->captions);
  std::replace(captions.begin(), captions.end(), '\n', ' ');
  const std::string kind = number == ErrorNumber::Overflow ? "Overflow: " : "Type mismatch: ";
  throw RunTimeError(number, kind + NameOf(field) + (captions.empty() ? "" : " (" + captions + ")") + ": \"" +
                                 field.text.substr(0, 40) + "\" " + reason);
}

[[noreturn]] void RefuseAsTooLarge(const SetupField& field) {
  Refuse(ErrorNumber::Overflow, field, "is above the largest number, 2147483647");
}

std::int32_t LeadingNumber(const SetupField& field) {
  const double value = std::round(NumericValue(field.text));
  if (std::abs(value) > std::numeric_limits<std::int32_t>::max()) RefuseAsTooLarge(field);
  return static_cast<std::int32_t>(value);
}

std::int32_t StrictNumber(const SetupField& field) {
  if (field.text.empty()) return 0;
  std::int32_t value = 0;
  const char* const end = field.text.data() + field.text.size();
  const auto [stop, fault] = std::from_chars(field.text.data(), end, value);
  if (fault == std::errc::result_out_of_range) RefuseAsTooLarge(field);
  if (fault != std::errc() || stop != end) Refuse(ErrorNumber::TypeMismatch, field, "is no whole number");
  return value;
}

std::int32_t NumberOf(const SetupField& field) {
  if (field.row->kind != FieldKind::Text) return field.value;
  const bool strict = field.row->control == Control::t && field.element <= kLastStrictField;
  return strict ? StrictNumber(field) : LeadingNumber(field);
}

/// What a field gives its cell.
using Value = std::variant<std::int32_t, Boolean, std::string>;

Value ValueOf(const SetupField& field, const CfgCell& cell) {
  if (std::holds_alternative<std::int32_t*>(cell)) return NumberOf(field);
  if (std::holds_alternative<Boolean*>(cell)) return AsBoolean(field.value != 0);
  return field.text;
}

/// Reads all fields before it changes a cell, so that a refused number leaves the tables as they were.
void TakeFields(std::span<const Link> links, const SetupFields& fields, Tables& tables, int number) {
  std::vector<Value> values;
  for (const Link& link : links) {
    values.push_back(ValueOf(fields.At(link.field), link.cell(tables, number, link.row)));
  }
  for (std::size_t i = 0; i < links.size(); ++i) {
    std::visit([&](auto* cell) { *cell = std::get<std::decay_t<decltype(*cell)>>(values[i]); },
               links[i].cell(tables, number, links[i].row));
  }
}

}  // namespace

void ChannelToFields(Tables& tables, int ch, SetupFields& fields, const SetField& set) {
  for (const Link& link : kChannelLinks) {
    const CfgCell cell = link.cell(tables, ch, link.row);
    SetupField& field = fields.At(link.field);
    if (const auto* text = std::get_if<std::string*>(&cell)) {
      field.text = **text;
    } else if (const auto* truth = std::get_if<Boolean*>(&cell)) {
      set(link.field, **truth == True ? 1 : 0);
    } else if (field.row->kind == FieldKind::List) {
      set(link.field, *std::get<std::int32_t*>(cell));
    } else {
      field.text = std::to_string(*std::get<std::int32_t*>(cell));
    }
  }
}

void FieldsToChannel(const SetupFields& fields, Tables& tables, int ch) {
  TakeFields(kChannelLinks, fields, tables, ch);
}

void ProtocolToFields(Tables& tables, int proto, SetupFields& fields) {
  for (const Link& link : ProtocolLinks()) {
    const CfgCell cell = link.cell(tables, proto, link.row);
    SetupField& field = fields.At(link.field);
    if (const auto* text = std::get_if<std::string*>(&cell)) {
      field.text = **text;
    } else if (const auto* truth = std::get_if<Boolean*>(&cell)) {
      field.value = **truth == True ? 1 : 0;
    } else {
      const std::int32_t number = *std::get<std::int32_t*>(cell);
      field.text = number > 0 ? std::to_string(number) : "";
    }
  }
}

void FieldsToProtocol(const SetupFields& fields, Tables& tables, int proto) {
  TakeFields(ProtocolLinks(), fields, tables, proto);
}
