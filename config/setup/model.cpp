#include "config/setup/model.h"

#include <string>
#include <utility>
#include <vector>

#include "config/setup/field_values.h"
#include "config/setup/panels.h"
#include "config/setup/rules.h"
#include "core/configuration.h"
#include "core/fixed_tables.h"
#include "core/tables.h"

namespace {

constexpr int kPorts = 68;

template <typename Texts>
std::vector<std::string> ListOf(const Texts& texts) {
  std::vector<std::string> list;
  for (int row = 0; row < Texts::Size(); ++row) list.push_back(texts[row]);
  return list;
}

std::vector<std::string> PortNames() {
  std::vector<std::string> names;
  for (int number = 1; number <= kPorts; ++number) names.push_back("COM" + std::to_string(number));
  return names;
}

std::vector<std::string> ProtocolNames() {
  std::vector<std::string> names;
  for (int proto = 0; !ProtocolName(proto).empty(); ++proto) names.push_back(ProtocolName(proto));
  return names;
}

/// Fields that the DataMap panel could map.
std::vector<std::string> MappedFields() {
  std::vector<std::string> names = DdeFieldList();
  std::erase_if(names, [](const std::string& name) { return name == "STATUS8" || name == "INVALIDATE"; });
  return names;
}

void FillLists(SetupFields& fields, const Tables& tables) {
  const auto items = [&](int list) -> std::vector<std::string>& { return fields.At(Control::cb, list).items; };
  items(0) = {"PC Serial Port", "ArcNet (Vantor)", "Other..."};
  items(1) = PortNames();
  items(2) = ListOf(tables.PortSettingsTable);
  items(3) = ProtocolNames();
  items(4) = {"Native Access Jet", "Access ODBC", "Oracle ODBC", "SQL Server", "Other ODBC..."};
  items(5) = ListOf(tables.UnitsTable);
  items(6) = {"Disabled ", "XXXXXX", "XXXXX.X", "XXXX.XX", "XXX.XXX", "XX.XXXX", "X.XXXXX"};
  for (SetupField& list : fields.Array(Control::cbDM)) {
    const int group = list.element / 12;
    if (group == 0) list.items = MappedFields();
    if (group == 2) list.items = {"Text", "Numeric"};
  }
}

/// The rectangle that shows while a check box holds the focus.
std::optional<FieldId> FocusMark(FieldId field) {
  if (field.control == Control::ck) return FieldId{Control::sRect, field.element};
  if (field.control == Control::ckCmd && field.element < kCommandRows) return FieldId{Control::sCmdRect, field.element};
  if (field.control == Control::cke) return FieldId{Control::seRect};
  return std::nullopt;
}

bool BelongsToEntry(Control control) {
  return control == Control::te || control == Control::cbStatus || control == Control::cbDDE || control == Control::cke;
}

}  // namespace

SetupModel::SetupModel(Tables& tables, Configuration& configuration)
    : tables_(tables), configuration_(configuration), channel_(kNoChannel) {
  for (Control hidden : {Control::fCommand, Control::fOPC, Control::fDataMap, Control::lDebugMode, Control::sRect,
                         Control::seRect, Control::sCmdRect}) {
    for (SetupField& field : fields_.Array(hidden)) field.visible = false;
  }
}

void SetupModel::Begin(int ch) {
  channel_ = ch;
  FillLists(fields_, tables_);
  for (SetupField& heading : fields_.Array(Control::lDEVICE)) heading.text = "SCALE " + DisplayNumber(ch);
  fields_.At(Control::lDebugMode).visible = tables_.DebugMode == True;
  HidePanels(fields_);
  focusRequest_ = {Control::cb, 0};
  Changed();
}

void SetupModel::End() {
  HidePanels(fields_);
  channel_ = kNoChannel;
}

void SetupModel::ShowChannel(int ch) {
  if (ch != channel_) return;  // the files of another channel have been read: its values are not this screen's
  ChannelToFields(tables_, ch, fields_, [this](FieldId field, int value) { Set(field, value); });
  Changed();
}

void SetupModel::TakeChannel(int ch) {
  if (ch != channel_) return;
  for (int list = 0; list <= 4; ++list) {
    if (fields_.At(Control::cb, list).value < 0) Set({Control::cb, list}, 0);
  }
  FieldsToChannel(fields_, tables_, ch);
  Changed();
}

void SetupModel::ShowProtocol(int proto) {
  protocol_ = proto;
  ProtocolToFields(tables_, proto, fields_);
  grid_.Show(tables_.ProtoStatusTable[proto]);
  if (onProtocolShown_) onProtocolShown_(proto);
  Changed();
}

void SetupModel::TakeProtocol(int proto) {
  FieldsToProtocol(fields_, tables_, proto);
  grid_.PutInto(tables_.ProtoStatusTable[proto]);
}

bool SetupModel::ProtocolIsSaved(std::int32_t proto) const {
  return tables_.UnprotectFormats == True || proto > tables_.LastFixedProtocol;
}

void SetupModel::SetIndex(FieldId list, int index) {
  Set(list, index);
  Changed();
}

void SetupModel::SetValue(FieldId check, int value) {
  Set(check, value);
  Changed();
}

void SetupModel::SetText(FieldId text, std::string_view value) {
  fields_.At(text).text = value;
  if (BelongsToEntry(text.control)) entry_.EnableEntryExitTest();
  Changed();
}

void SetupModel::Press(Control button) {
  switch (button) {
    case Control::cmdInsert:
      entry_.cmdInsert();
      break;
    case Control::cmdReplace:
      entry_.cmdReplace();
      break;
    case Control::cmdDelete:
      entry_.cmdDelete();
      break;
    case Control::cmdCancelEntry:
      entry_.cmdCancelEntry();
      break;
    default:
      PressPanelButton(fields_, button, tables_.ScreenWidth);
      return Changed();
  }
  focusRequest_ = {Control::TDBList1};
  Changed();
}

void SetupModel::TakeFocus(FieldId field) {
  SetupField& now = fields_.At(field);
  if (now.row->kind == FieldKind::List && now.value < 0 && !now.items.empty()) Set(field, 0);
  if (const auto mark = FocusMark(field)) fields_.At(*mark).visible = true;
  Changed();
}

void SetupModel::LoseFocus(FieldId field) {
  const auto mark = FocusMark(field);
  if (!mark) return;
  fields_.At(*mark).visible = false;
  Changed();
}

void SetupModel::OpenEntry() {
  if (entry_.IsOpen() || !fields_.At(Control::TDBList1).enabled) return;
  focusRequest_ = entry_.Open();
  Changed();
}

void SetupModel::SelectCell(int row, int column) {
  grid_.SetCol(column);
  grid_.SelectRow(row);
  Changed();
}

std::optional<FieldId> SetupModel::TakeFocusRequest() { return std::exchange(focusRequest_, std::nullopt); }

/// An index that the list does not have is no selection.
void SetupModel::Set(FieldId id, int value) {
  SetupField& field = fields_.At(id);
  const bool missing = value < 0 || value >= static_cast<int>(field.items.size());
  field.value = field.row->kind == FieldKind::List && missing ? -1 : value;
  RunRule(id);
}

void SetupModel::RunRule(FieldId id) {
  const SetField set = [this](FieldId field, int value) { Set(field, value); };
  if (BelongsToEntry(id.control)) return entry_.EnableEntryExitTest();
  if (id == FieldId{Control::cb, 0}) return ApplyConnectionRule(fields_, set);
  if (id == FieldId{Control::cb, 3}) return ChooseProtocol(fields_.At(id).value);
  if (id == FieldId{Control::cb, 4}) return ApplyDriverRule(fields_);
  ApplyCheckRule(fields_, id.control);
}

/// The whole screen shows the protocol that was picked, in memory only.
void SetupModel::ChooseProtocol(int proto) {
  if (!loading_ && proto >= 0 && channel_ != kNoChannel) {
    tables_.ChanProtocol[channel_] = proto;
    try {
      configuration_.CfgProc(CfgAction::ReadFormatFile, proto);
    } catch (const RunTimeError& fault) {
      if (!onFault_) throw;
      onFault_(fault);  // the screen shows what the tables hold, so that the file can be mended
    }
    configuration_.CfgProc(CfgAction::ProtocolToScreen, proto);
  }
  const bool editable = ProtocolIsSaved(proto);
  FixedFormatMode(fields_, !editable);
  for (SetupField& warning : fields_.Array(Control::lWarning)) warning.visible = editable;
  ApplyProtocolRule(
      fields_, [this](FieldId field, int value) { Set(field, value); }, proto);
}

void SetupModel::Changed() const {
  if (onChange_) onChange_();
}
