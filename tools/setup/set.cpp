#include <algorithm>
#include <charconv>
#include <cstdio>

#include "config/setup/typed_text.h"
#include "core/fixed_tables.h"
#include "protocol/number.h"
#include "tools/setup/field_names.h"
#include "tools/setup/manager/running_manager.h"
#include "tools/setup/verbs.h"

namespace {

struct Assignment {
  std::string name, value;
};

Assignment Split(const std::string& word) {
  const std::size_t equals = word.find('=');
  if (equals == std::string::npos || equals == 0) {
    throw SetupToolFault("\"" + word + "\" is no setting: write NAME=VALUE");
  }
  return {word.substr(0, equals), word.substr(equals + 1)};
}

std::optional<int> Number(std::string_view text) {
  int number = 0;
  const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (fault != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

int IndexOf(const SetupField& list, const std::string& value) {
  for (std::size_t i = 0; i < list.items.size(); ++i) {
    if (Trim(list.items[i]) == Trim(value)) return static_cast<int>(i);
  }
  // A port is known by its number, not by its place in the list.
  if (list.row->control == Control::cb && list.element == 1 && Number(value)) return IndexOf(list, "COM" + value);
  if (const auto number = Number(value); number && *number >= 0 && *number < static_cast<int>(list.items.size())) {
    return *number;
  }
  std::string items;
  for (const std::string& item : list.items) items += "\n  " + item;
  throw SetupToolFault(PlainName(list) + ": \"" + value + "\" is not in its list:" + items);
}

int TruthOf(const SetupField& check, const std::string& value) {
  if (value == "yes" || value == "1" || value == "on") return 1;
  if (value == "no" || value == "0" || value == "off") return 0;
  throw SetupToolFault(PlainName(check) + ": \"" + value + "\" is neither yes nor no");
}

/// A row of the status table: "row(3)=Motion|1 / MOTION|3b3|1b1|8|X", with "insert(3)=" in front of row 3, and
/// "delete(3)=". False for another name.
bool SetStatusRow(SetupModel& model, const Assignment& assignment) {
  const std::size_t open = assignment.name.find('(');
  const std::string verb = assignment.name.substr(0, open);
  if (open == std::string::npos || (verb != "row" && verb != "insert" && verb != "delete")) return false;
  if (!model.Fields().At(Control::TDBList1).enabled) {
    throw SetupToolFault("The status table of a fixed format cannot be changed without --unprotect");
  }
  StatusGrid& grid = model.Grid();
  const auto row = Number(std::string_view(assignment.name).substr(open + 1, assignment.name.size() - open - 2));
  const int firstEmpty = grid.FirstEmptyEntry();
  if (!row || !assignment.name.ends_with(')') || *row < 0 ||
      *row > (firstEmpty >= 0 ? firstEmpty : StatusGrid::kRows - 1)) {
    throw SetupToolFault(assignment.name + ": rows are 0 to " +
                         std::to_string(firstEmpty >= 0 ? firstEmpty : StatusGrid::kRows - 1) +
                         (firstEmpty >= 0 ? ", the first free one, so that there is no gap" : ""));
  }
  if (verb == "delete") {
    grid.DeleteEntry(*row);
    return true;
  }
  if (verb == "insert" && firstEmpty < 0) throw SetupToolFault("The status table is full");
  StatusRowTexts texts;
  std::string_view rest = assignment.value;
  for (std::size_t column = 0; column < texts.size(); ++column) {
    const std::size_t bar = column + 1 < texts.size() ? rest.find('|') : std::string_view::npos;
    if (bar == std::string_view::npos && column + 1 < texts.size()) {
      throw SetupToolFault(assignment.name +
                           " takes six texts with | between them: name, DDE field, position, length, "
                           "mask, X or nothing");
    }
    texts[column] = rest.substr(0, bar);
    rest.remove_prefix(bar == std::string_view::npos ? rest.size() : bar + 1);
    // Position, length and mask are fields of the entry panel, with their limits.
    const bool ofPanel = column >= 2 && column <= 4;
    const FieldId field = ofPanel ? FieldId{Control::te, static_cast<int>(column) - 2} : FieldId{Control::tDeviceDesc};
    const TypedText taken = TakeTyped(*model.Fields().At(field).row, texts[column]);
    if (!taken.refusal.empty()) {
      throw SetupToolFault(assignment.name + ": " + std::string(taken.refusal) + ": \"" + texts[column] + "\"");
    }
  }
  if (texts[0].empty() || texts[2].empty() || texts[3].empty()) {
    throw SetupToolFault(assignment.name + ": name, position and length are needed");
  }
  verb == "insert" ? grid.InsertEntry(*row, texts) : grid.ReplaceEntry(*row, texts);
  return true;
}

void SetField(SetupModel& model, const FieldId id, const Assignment& assignment) {
  const SetupField& field = model.Fields().At(id);
  if (!field.enabled) {
    throw SetupToolFault(PlainName(field) + " (" + NameOf(field) +
                         ") is not used with the other settings, and cannot be changed");
  }
  switch (field.row->kind) {
    case FieldKind::List:
      return model.SetIndex(id, IndexOf(field, assignment.value));
    case FieldKind::Check:
      return model.SetValue(id, TruthOf(field, assignment.value));
    default: {
      const TypedText taken = TakeTyped(*field.row, assignment.value);
      if (!taken.refusal.empty()) {
        throw SetupToolFault(PlainName(field) + ": " + std::string(taken.refusal) + ": \"" + assignment.value + "\"");
      }
      return model.SetText(id, taken.text);
    }
  }
}

template <typename Fields>
bool IsAmong(const FieldId id, const Fields& fields) {
  return std::find(fields.begin(), fields.end(), id) != fields.end();
}

bool OfProtocol(const FieldId id) { return IsAmong(id, ProtocolFields()); }
bool OfChannel(const FieldId id) { return IsAmong(id, ChannelFields()); }

void RefuseForOther(const std::string& name, bool channel) {
  throw SetupToolFault("\"" + name + "\" is a setting of a " + (channel ? "protocol" : "channel") + ": set it for one");
}

void Apply(SetupModel& model, const Words& words, bool channel) {
  for (const std::string& word : words) {
    const Assignment assignment = Split(word);
    const auto id = FindField(model.Fields(), assignment.name);
    if (id && (OfProtocol(*id) || OfChannel(*id))) {
      if (OfProtocol(*id) == channel) RefuseForOther(assignment.name, channel);
      SetField(model, *id, assignment);
    } else if (!SetStatusRow(model, assignment)) {
      throw SetupToolFault("There is no setting \"" + assignment.name + "\"; show lists them");
    } else if (channel) {
      RefuseForOther(assignment.name, channel);
    }
  }
}

/// What is questionable in the channel or protocol that was set, the only one in the tables.
void PrintFindings(SettingsFolder& settings, const Target& target) {
  const Tables& tables = settings.Store();
  const auto print = [](const Findings& findings) {
    for (const Finding& finding : findings) std::fprintf(stderr, "note: %s\n", finding.Line().c_str());
  };
  if (target.kind == Target::Kind::Protocol) return print(CheckProtocol(tables, target.number));
  const PortsOfMachine ports = settings.Ports();
  print(CheckChannel(tables, target.number, ports.probe));
  print(CheckPorts(tables, ports));
}

}  // namespace

int Set(const std::string& folder, const Words& given) {
  Words words = given;
  const bool unprotect = std::erase(words, "--unprotect") > 0;
  const Target target = TakeTarget(words);
  if (target.kind == Target::Kind::All) throw SetupToolFault("set takes a channel or a protocol");
  if (words.empty()) throw SetupToolFault("set takes NAME=VALUE, one or more");
  const bool channel = target.kind == Target::Kind::Channel;

  RunningManager manager(folder);
  const bool runs = manager.IsThere();
  std::string unreachable;
  if (runs) {
    try {
      const int edited = manager.EditedChannel();
      if (edited != 0 && (!channel || edited == target.number + 1)) {
        throw SetupToolFault("Channel " + std::to_string(edited) +
                             " is being edited on the setup screen; leave it with Ok or Cancel first");
      }
    } catch (const ManagerFault& fault) {
      unreachable = fault.what();
    }
  }

  SettingsFolder settings(folder);
  settings.Store().UnprotectFormats = AsBoolean(unprotect);
  if (channel) {
    settings.OpenChannel(target.number);
    Apply(settings.Model(), words, channel);
    settings.WriteChannel(target.number);
  } else {
    settings.OpenProtocol(target.number);
    if (!settings.Model().ProtocolIsSaved(target.number)) {
      throw SetupToolFault(ProtocolName(target.number) + " is a fixed format, which is not saved without --unprotect");
    }
    Apply(settings.Model(), words, channel);
    settings.WriteProtocol(target.number);
  }
  PrintFindings(settings, target);
  if (!runs) {
    std::printf("Saved.\n");
    return 0;
  }
  if (!unreachable.empty()) {
    std::fprintf(stderr, "Saved. %s\n", unreachable.c_str());
    return 1;
  }
  try {
    channel ? manager.ReloadChannel(target.number + 1) : manager.ReloadProtocol(target.number);
  } catch (const ManagerFault& fault) {
    std::fprintf(stderr, "Saved, but the manager has not taken it: %s\n", fault.what());
    return 1;
  }
  std::printf("Saved, and taken by the running manager.\n");
  return 0;
}
