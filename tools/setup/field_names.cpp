#include "tools/setup/field_names.h"

#include <algorithm>
#include <cctype>

#include "core/tables.h"

namespace {

struct Named {
  FieldId field;
  const char* name;
};

/// Fields whose caption is a control of its own, or that have none.
constexpr Named kNamed[] = {
    {{Control::cb, 1}, "PC Port"},
    {{Control::cb, 2}, "Port Setup"},
    {{Control::cb, 4}, "Database Driver"},
    {{Control::tTxDelay}, "Tx Delay"},
    {{Control::tOtherDriver}, "Other Driver"},
    {{Control::tAsciiLogFileName}, "ASCII Log File Name"},
    {{Control::ckInteractiveDBErrors}, "Interactive SQL Errors"},
    {{Control::ckUseLog}, "Audit Trail Logging"},
};

constexpr const char* kDataFields[] = {"Gross_Wt", "Tare_Wt", "Net_Wt", "ID"};

/// Captions without what stands in parentheses, colons and line breaks.
std::string Cleaned(std::string_view text) {
  std::string clean;
  int depth = 0;
  for (char character : text) {
    if (character == '(') ++depth;
    if (depth == 0 && character != ':' && character != '&') clean += character == '\n' ? ' ' : character;
    if (character == ')') --depth;
  }
  const std::size_t first = clean.find_first_not_of(' ');
  const std::size_t last = clean.find_last_not_of(' ');
  return first == std::string::npos ? std::string() : clean.substr(first, last - first + 1);
}

std::string Compared(std::string_view name) {
  std::string key;
  for (unsigned char character : name) {
    if (std::isalnum(character)) key += static_cast<char>(std::tolower(character));
  }
  return key;
}

std::string NameOfCommandField(const SetupField& field, const char* what) {
  return "Command " + std::to_string(field.element + 1) + " " + what;
}

}  // namespace

std::string PlainName(const SetupField& field) {
  for (const Named& row : kNamed) {
    if (row.field == FieldId{field.row->control, field.element}) return row.name;
  }
  switch (field.row->control) {
    case Control::t:
      if (field.element < 8) {
        return std::string(kDataFields[field.element / 2]) + (field.element % 2 == 0 ? " Position" : " Length");
      }
      break;
    case Control::ck:
      return std::string(kDataFields[field.element]) + " Enable";
    case Control::ckCmd:
      return NameOfCommandField(field, "Enable");
    case Control::tCmd:
      return NameOfCommandField(field, "Definition");
    case Control::tCmdName:
      return NameOfCommandField(field, "Name");
    case Control::tCmdValue:
      return NameOfCommandField(field, "Value");
    case Control::tOpcTag:
      return Cleaned(field.row->captions.substr(0, field.row->captions.find('\n'))) + " Tag";
    default:
      break;
  }
  return Cleaned(field.row->captions.empty() ? field.row->caption : field.row->captions);
}

std::optional<FieldId> FindField(const SetupFields& fields, std::string_view name) {
  if (const auto field = fields.Find(name)) return field;
  for (const auto& list : {ChannelFields(), ProtocolFields()}) {
    for (const FieldId id : list) {
      if (Compared(PlainName(fields.At(id))) == Compared(name)) return id;
    }
  }
  return std::nullopt;
}

std::vector<FieldId> ChannelFields() {
  std::vector<FieldId> list = {{Control::tDeviceDesc}, {Control::ckEnableDevice}};
  for (int i : {0, 1, 2, 3, 4}) list.push_back({Control::cb, i});
  for (Control control : {Control::tOtherDriver, Control::tDeviceID}) {
    list.push_back({control});
  }
  for (int i : {5, 6}) list.push_back({Control::cb, i});
  for (Control control : {Control::tRefresh, Control::tTxDelay, Control::tTimeout, Control::ckDDEServer, Control::ckOPC,
                          Control::ckBidirectional, Control::ckPollForData, Control::ckXONXOFF, Control::ckEnableVVant,
                          Control::ckDataMap, Control::ckAsciiLogFile, Control::tAsciiLogFileName, Control::ckUseLog,
                          Control::ckInteractiveDBErrors, Control::tNodeName, Control::tServerName}) {
    list.push_back({control});
  }
  for (int tag = 0; tag < kOpcTags; ++tag) list.push_back({Control::tOpcTag, tag});
  return list;
}

std::vector<FieldId> ProtocolFields() {
  std::vector<FieldId> list;
  for (int field = 0; field < 4; ++field) {
    list.push_back({Control::t, 2 * field});
    list.push_back({Control::t, 2 * field + 1});
    list.push_back({Control::ck, field});
  }
  for (int i : {8, 9, 10}) list.push_back({Control::t, i});
  list.push_back({Control::tCmdStart});
  list.push_back({Control::tCmdEnd});
  for (int command = 0; command < kCommandRows; ++command) {
    for (Control control : {Control::ckCmd, Control::tCmdName, Control::tCmdValue, Control::tCmd}) {
      list.push_back({control, command});
    }
  }
  return list;
}

std::string ShownValue(const SetupField& field) {
  switch (field.row->kind) {
    case FieldKind::List:
      return field.value < 0 ? "(none)" : field.Item();
    case FieldKind::Check:
      return field.value != 0 ? "yes" : "no";
    default:
      return field.text;
  }
}
