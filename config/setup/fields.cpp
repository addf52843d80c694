#include "config/setup/fields.h"

#include <algorithm>
#include <cctype>

#include "core/table.h"

namespace {

struct ControlName {
  Control control;
  std::string_view name;
  bool isArray;
};

// clang-format off
constexpr ControlName kNames[] = {
    {Control::cb, "cb", true},
    {Control::tDeviceDesc, "tDeviceDesc", false},
    {Control::tDeviceID, "tDeviceID", false},
    {Control::tOtherDriver, "tOtherDriver", false},
    {Control::tRefresh, "tRefresh", false},
    {Control::tTxDelay, "tTxDelay", false},
    {Control::tTimeout, "tTimeout", false},
    {Control::ckEnableDevice, "ckEnableDevice", false},
    {Control::ckDDEServer, "ckDDEServer", false},
    {Control::ckOPC, "ckOPC", false},
    {Control::ckBidirectional, "ckBidirectional", false},
    {Control::ckPollForData, "ckPollForData", false},
    {Control::ckXONXOFF, "ckXONXOFF", false},
    {Control::ckAsciiLogFile, "ckAsciiLogFile", false},
    {Control::tAsciiLogFileName, "tAsciiLogFileName", false},
    {Control::ckEnableVVant, "ckEnableVVant", false},
    {Control::ckDataMap, "ckDataMap", false},
    {Control::ckUseLog, "ckUseLog", false},
    {Control::ckInteractiveDBErrors, "ckInteractiveDBErrors", false},
    {Control::cmdClear, "cmdClear", false},
    {Control::cmdOk, "cmdOk", false},
    {Control::cmdCancel, "cmdCancel", false},
    {Control::cmdCommands, "cmdCommands", false},
    {Control::cmdOPC, "cmdOPC", false},
    {Control::cmdDataMap, "cmdDataMap", false},
    {Control::lWarning, "lWarning", true},
    {Control::lDEVICE, "lDEVICE", true},
    {Control::lDebugMode, "lDebugMode", false},
    {Control::lCb1, "lCb1", true},
    {Control::lCb2, "lCb2", true},
    {Control::lCb4, "lCb4", true},
    {Control::ltTxDelay, "ltTxDelay", true},
    {Control::fConnection, "fConnection", false},
    {Control::fMisc, "fMisc", false},
    {Control::fDataField, "fDataField", false},
    {Control::t, "t", true},
    {Control::ck, "ck", true},
    {Control::sRect, "sRect", true},
    {Control::fStatus, "fStatus", false},
    {Control::TDBList1, "TDBList1", false},
    {Control::fEntry, "fEntry", false},
    {Control::cbStatus, "cbStatus", false},
    {Control::cbDDE, "cbDDE", false},
    {Control::te, "te", true},
    {Control::cke, "cke", false},
    {Control::seRect, "seRect", false},
    {Control::cmdInsert, "cmdInsert", false},
    {Control::cmdReplace, "cmdReplace", false},
    {Control::cmdDelete, "cmdDelete", false},
    {Control::cmdCancelEntry, "cmdCancelEntry", false},
    {Control::fCommand, "fCommand", false},
    {Control::ckCmd, "ckCmd", true},
    {Control::tCmdName, "tCmdName", true},
    {Control::tCmdValue, "tCmdValue", true},
    {Control::tCmd, "tCmd", true},
    {Control::tCmdStart, "tCmdStart", false},
    {Control::tCmdEnd, "tCmdEnd", false},
    {Control::sCmdRect, "sCmdRect", true},
    {Control::fOPC, "fOPC", false},
    {Control::tNodeName, "tNodeName", false},
    {Control::tServerName, "tServerName", false},
    {Control::tOpcTag, "tOpcTag", true},
    {Control::fDataMap, "fDataMap", false},
    {Control::tDMDBName, "tDMDBName", false},
    {Control::cmdDMBrowse, "cmdDMBrowse", false},
    {Control::cbDM, "cbDM", true},
    {Control::tDMLen, "tDMLen", true},
    {Control::optDM, "optDM", true},
    {Control::ckDM, "ckDM", true},
};

constexpr FieldRow kRows[] = {
    {.control = Control::cb, .kind = FieldKind::List, .captions = "Connect\nUsing:"},
    {.control = Control::cb, .first = 1, .last = 1, .kind = FieldKind::List},  // lCb1
    {.control = Control::cb, .first = 2, .last = 2, .kind = FieldKind::List},  // lCb2
    {.control = Control::cb, .first = 3, .last = 3, .kind = FieldKind::List, .captions = "Device\nProtocol:"},
    {.control = Control::cb, .first = 4, .last = 4, .kind = FieldKind::List},  // lCb4
    {.control = Control::cb, .first = 5, .last = 5, .kind = FieldKind::List, .captions = "Primary Units:",
     .tip = "Select The Unit of Measure To Be Considered The Primary Unit Of Measure (Pri. UOM)..."},
    {.control = Control::cb, .first = 6, .last = 6, .kind = FieldKind::List, .captions = "Decimal Places:",
     .tip = "Select The Unit of Measure To Be Considered The Number of Decimal Places for Devices Without Status "
            "Encoded Decimal Information..."},
    {.control = Control::tDeviceDesc, .kind = FieldKind::Text, .captions = "Device\nDesc.", .selectedOnEntry = true},
    {.control = Control::tDeviceID, .kind = FieldKind::Text, .captions = "Network\nDevice ID:",
     .selectedOnEntry = true},
    {.control = Control::tOtherDriver, .kind = FieldKind::Text, .selectedOnEntry = true},
    {.control = Control::tRefresh, .kind = FieldKind::Text, .captions = "Refresh:\n( mS )", .limit = 3,
     .selectedOnEntry = true},
    {.control = Control::tTxDelay, .kind = FieldKind::Text, .limit = 3, .selectedOnEntry = true},  // ltTxDelay
    {.control = Control::tTimeout, .kind = FieldKind::Text, .captions = "Timeout:\n( mS )\n( 0=None )", .limit = 9999},
    {.control = Control::ckEnableDevice, .kind = FieldKind::Check, .caption = "Enable Device"},
    {.control = Control::ckDDEServer, .kind = FieldKind::Check, .caption = "DDE Server"},
    {.control = Control::ckOPC, .kind = FieldKind::Check, .caption = "OPC Interface"},
    {.control = Control::ckBidirectional, .kind = FieldKind::Check, .caption = "Bi-Directional "},
    {.control = Control::ckPollForData, .kind = FieldKind::Check, .caption = "Poll For Data"},
    {.control = Control::ckXONXOFF, .kind = FieldKind::Check, .caption = "Use XON/XOFF"},
    {.control = Control::ckAsciiLogFile, .kind = FieldKind::Check, .caption = "ASCII Log File"},
    {.control = Control::tAsciiLogFileName, .kind = FieldKind::Text, .selectedOnEntry = true},
    {.control = Control::ckEnableVVant, .kind = FieldKind::Check, .caption = "Enable Virtual Vant"},
    {.control = Control::ckDataMap, .kind = FieldKind::Check, .caption = "Enable DataMap"},
    {.control = Control::ckUseLog, .kind = FieldKind::Check, .caption = "  Enable Audit Trail Logging"},
    {.control = Control::ckInteractiveDBErrors, .kind = FieldKind::Check,
     .caption = "  Allow Interactive SQL Error Messaging While Maximized"},
    {.control = Control::cmdClear, .kind = FieldKind::Button, .caption = "&Delete Data Monitor Logs...",
     .tip = "This Will Erase DataIn, DataOut, and SQL Log Files..."},
    {.control = Control::cmdOk, .kind = FieldKind::Button, .caption = "&Ok",
     .tip = "Update Modified Tarvex Settings..."},
    {.control = Control::cmdCancel, .kind = FieldKind::Button, .caption = "&Cancel",
     .tip = "Don't Update Modified Tarvex Settings..."},
    {.control = Control::cmdCommands, .kind = FieldKind::Button, .caption = "Commands >>",
     .tip = "Define/Edit Device Commands..."},
    {.control = Control::cmdOPC, .kind = FieldKind::Button, .caption = "OPC Setup >>",
     .tip = "Define/Edit OPC Server Tag Links..."},
    {.control = Control::cmdDataMap, .kind = FieldKind::Button, .caption = "DataMap >>"},
    {.control = Control::lWarning, .kind = FieldKind::Label,
     .caption = "( Device Protocols Are Globally Defined For ALL Channels )"},
    {.control = Control::lWarning, .first = 1, .last = 1, .kind = FieldKind::Label,
     .caption = "WARNING!   Changing Device Protocol And Selecting 'OK' Will Save Modified Device Protocol."},
    {.control = Control::lDEVICE, .last = 1, .kind = FieldKind::Label},
    {.control = Control::lDebugMode, .kind = FieldKind::Label, .caption = "DEBUG MODE"},
    {.control = Control::lCb1, .kind = FieldKind::Label, .caption = "PC"},
    {.control = Control::lCb1, .first = 1, .last = 1, .kind = FieldKind::Label, .caption = "Port:"},
    {.control = Control::lCb2, .kind = FieldKind::Label, .caption = "Port"},
    {.control = Control::lCb2, .first = 1, .last = 1, .kind = FieldKind::Label, .caption = "Setup:"},
    {.control = Control::lCb4, .kind = FieldKind::Label, .caption = "Database"},
    {.control = Control::lCb4, .first = 1, .last = 1, .kind = FieldKind::Label, .caption = "Driver:"},
    {.control = Control::ltTxDelay, .kind = FieldKind::Label, .caption = "Tx Delay:"},
    {.control = Control::ltTxDelay, .first = 1, .last = 1, .kind = FieldKind::Label, .caption = "( mS )"},
    {.control = Control::fConnection, .kind = FieldKind::Panel},
    {.control = Control::fMisc, .kind = FieldKind::Panel, .caption = " &Misc. Features "},

    {.control = Control::fDataField, .kind = FieldKind::Panel, .caption = " Device Protocol Data Field Setup "},
    {.control = Control::t, .last = 7, .kind = FieldKind::Text, .digitsOnly = true, .selectedOnEntry = true},
    {.control = Control::t, .first = 8, .last = 8, .kind = FieldKind::Text,
     .captions = "Stream Starting Character:\n( ASCII Decimal )", .digitsOnly = true, .selectedOnEntry = true},
    {.control = Control::t, .first = 9, .last = 9, .kind = FieldKind::Text,
     .captions = "Stream Terminator Character:\n( ASCII Decimal )", .digitsOnly = true, .selectedOnEntry = true},
    {.control = Control::t, .first = 10, .last = 10, .kind = FieldKind::Text, .captions = "Max Stream Length:",
     .digitsOnly = true, .selectedOnEntry = true},
    {.control = Control::ck, .kind = FieldKind::Check, .captions = "Gross_Wt"},
    {.control = Control::ck, .first = 1, .last = 1, .kind = FieldKind::Check, .captions = "Tare_Wt"},
    {.control = Control::ck, .first = 2, .last = 2, .kind = FieldKind::Check, .captions = "Net_Wt"},
    {.control = Control::ck, .first = 3, .last = 3, .kind = FieldKind::Check, .captions = "ID"},
    {.control = Control::sRect, .last = 3, .kind = FieldKind::Mark},

    {.control = Control::fStatus, .kind = FieldKind::Panel, .caption = " Device Protocol Status Data Setup "},
    {.control = Control::TDBList1, .kind = FieldKind::Grid},
    {.control = Control::fEntry, .kind = FieldKind::Panel,
     .captions = "Device Protocol Status Data Parameter Entry", .caption = " Status Data &Parameter Entry "},
    {.control = Control::cbStatus, .kind = FieldKind::List,
     .tip = "Select The Status Definition For This Status Entry..."},
    {.control = Control::cbDDE, .kind = FieldKind::List,
     .tip = "Select DDE Field To Apply Status Field Definition..."},
    {.control = Control::te, .kind = FieldKind::Text,
     .tip = "If This Is A Partial Binary Field, Enter \"b\" And The Starting Bit Position After The Starting Char. "
            "Position...",
     .limit = 4, .selectedOnEntry = true},
    {.control = Control::te, .first = 1, .last = 1, .kind = FieldKind::Text,
     .tip = "If This Is A Partial Binary Field, Enter \"b\" And The Bit Field Width After The Field Byte/Char. "
            "Length...",
     .limit = 3, .selectedOnEntry = true},
    {.control = Control::te, .first = 2, .last = 2, .kind = FieldKind::Text,
     .tip = "Status Defination Bit Mask. If Field Length Is More Than 1, Enter The Actual Mask ASCII Characters...",
     .limit = 7, .selectedOnEntry = true},
    {.control = Control::cke, .kind = FieldKind::Check,
     .tip = "Check This Box If This Status Field Is To Be Actually Used..."},
    {.control = Control::seRect, .kind = FieldKind::Mark},
    {.control = Control::cmdInsert, .kind = FieldKind::Button, .caption = "&Insert",
     .tip = "Insert Status Data At Selected Location..."},
    {.control = Control::cmdReplace, .kind = FieldKind::Button, .caption = "&Replace",
     .tip = "Overwrite Status Data At Selected Location..."},
    {.control = Control::cmdDelete, .kind = FieldKind::Button, .caption = "&Delete",
     .tip = "Delete Status Data At Selected Location..."},
    {.control = Control::cmdCancelEntry, .kind = FieldKind::Button, .caption = "&Cancel",
     .tip = "Exit Status Entry Without Making Any Changes..."},

    {.control = Control::fCommand, .kind = FieldKind::Panel,
     .caption = " Device Protocol Bidirectional Command Setup "},
    {.control = Control::ckCmd, .last = 21, .kind = FieldKind::Check},  // 10 to 21 stand on the DataMap panel
    {.control = Control::tCmdName, .last = 9, .kind = FieldKind::Text, .limit = 20, .selectedOnEntry = true},
    {.control = Control::tCmdValue, .last = 9, .kind = FieldKind::Text, .limit = 5, .selectedOnEntry = true},
    {.control = Control::tCmd, .last = 9, .kind = FieldKind::Text, .limit = 25, .selectedOnEntry = true},
    {.control = Control::tCmdStart, .kind = FieldKind::Text,
     .captions = "Command Starting Character:\n( ASCII Decimal )", .selectedOnEntry = true},
    {.control = Control::tCmdEnd, .kind = FieldKind::Text,
     .captions = "Command Terminator Character:\n( ASCII Decimal )", .selectedOnEntry = true},
    {.control = Control::sCmdRect, .last = 9, .kind = FieldKind::Mark},

    {.control = Control::fOPC, .kind = FieldKind::Panel, .caption = " OPC Setup "},
    {.control = Control::tNodeName, .kind = FieldKind::Text, .captions = "Node\nName:", .selectedOnEntry = true},
    {.control = Control::tServerName, .kind = FieldKind::Text, .captions = "Server\nName:", .selectedOnEntry = true},
    {.control = Control::tOpcTag, .kind = FieldKind::Text, .captions = "Current Gross Wt.\nFLOAT",
     .selectedOnEntry = true},
    {.control = Control::tOpcTag, .first = 1, .last = 1, .kind = FieldKind::Text,
     .captions = "Current Tare Wt.\nFLOAT", .selectedOnEntry = true},
    {.control = Control::tOpcTag, .first = 2, .last = 2, .kind = FieldKind::Text,
     .captions = "Current Net Wt.\nFLOAT", .selectedOnEntry = true},
    {.control = Control::tOpcTag, .first = 3, .last = 3, .kind = FieldKind::Text,
     .captions = "Scale Status\nBYTE", .selectedOnEntry = true},
    {.control = Control::tOpcTag, .first = 4, .last = 4, .kind = FieldKind::Text,
     .captions = "Command\nBYTE", .selectedOnEntry = true},
    {.control = Control::tOpcTag, .first = 5, .last = 5, .kind = FieldKind::Text,
     .captions = "Command Parameter\nFLOAT", .selectedOnEntry = true},
    {.control = Control::tOpcTag, .first = 6, .last = 6, .kind = FieldKind::Text,
     .captions = "Command Status\nBYTE", .selectedOnEntry = true},

    {.control = Control::fDataMap, .kind = FieldKind::Panel, .caption = " DataMap Option Setup "},
    {.control = Control::tDMDBName, .kind = FieldKind::Text, .captions = "Database Name / Path:"},
    {.control = Control::cmdDMBrowse, .kind = FieldKind::Button, .caption = "&Browse..."},
    {.control = Control::cbDM, .last = 47, .kind = FieldKind::List},
    {.control = Control::tDMLen, .last = 11, .kind = FieldKind::Text, .limit = 3},
    {.control = Control::optDM, .last = 11, .kind = FieldKind::Option},
    {.control = Control::ckDM, .last = 1, .kind = FieldKind::Check},
};
// clang-format on

constexpr bool NamesAreInOrder() {
  std::size_t at = 0;
  for (const ControlName& entry : kNames) {
    if (static_cast<std::size_t>(entry.control) != at++) return false;
  }
  return at == static_cast<std::size_t>(Control::Count);
}
static_assert(NamesAreInOrder());

std::size_t At(Control control) { return static_cast<std::size_t>(control); }

const ControlName& EntryOf(Control control) { return kNames[At(control)]; }

bool SameIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](unsigned char x, unsigned char y) { return std::tolower(x) == std::tolower(y); });
}

SetupField FieldOf(const FieldRow& row, int element) {
  SetupField field{.row = &row, .element = element};
  field.text = row.caption;
  field.tip = row.tip;
  if (row.kind == FieldKind::List) field.value = -1;
  return field;
}

}  // namespace

std::string SetupField::Item() const {
  if (value < 0 || value >= static_cast<int>(items.size())) return {};
  return items[static_cast<std::size_t>(value)];
}

SetupFields::SetupFields() : fields_(::At(Control::Count)) {
  for (const FieldRow& row : kRows) {
    for (int element = row.first; element <= row.last; ++element) {
      fields_[::At(row.control)].push_back(FieldOf(row, element));
    }
  }
}

SetupField& SetupFields::At(Control control, int element) {
  std::vector<SetupField>& elements = fields_[::At(control)];
  if (element < 0 || element >= static_cast<int>(elements.size())) RaiseSubscriptOutOfRange();
  return elements[static_cast<std::size_t>(element)];
}

const SetupField& SetupFields::At(Control control, int element) const {
  return const_cast<SetupFields&>(*this).At(control, element);
}

std::span<SetupField> SetupFields::Array(Control control) { return fields_[::At(control)]; }

std::span<const SetupField> SetupFields::Array(Control control) const { return fields_[::At(control)]; }

std::optional<FieldId> SetupFields::Find(std::string_view name) const {
  for (const ControlName& entry : kNames) {
    for (const SetupField& field : Array(entry.control)) {
      if (SameIgnoringCase(name, NameOf(field))) return FieldId{entry.control, field.element};
    }
  }
  return std::nullopt;
}

std::string_view NameOf(Control control) { return EntryOf(control).name; }

std::string NameOf(const SetupField& field) {
  const ControlName& entry = EntryOf(field.row->control);
  std::string name(entry.name);
  if (entry.isArray) name += "(" + std::to_string(field.element) + ")";
  return name;
}
