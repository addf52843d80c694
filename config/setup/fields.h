#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Controls of the setup screen. A control that there is more than once is an array, whose elements count from 0.
enum class Control {
  // connection page
  cb,
  tDeviceDesc,
  tDeviceID,
  tOtherDriver,
  tRefresh,
  tTxDelay,
  tTimeout,
  ckEnableDevice,
  ckDDEServer,
  ckOPC,
  ckBidirectional,
  ckPollForData,
  ckXONXOFF,
  ckAsciiLogFile,
  tAsciiLogFileName,
  ckEnableVVant,
  ckDataMap,
  ckUseLog,
  ckInteractiveDBErrors,
  cmdClear,
  cmdOk,
  cmdCancel,
  cmdCommands,
  cmdOPC,
  cmdDataMap,
  lWarning,
  lDEVICE,
  lDebugMode,
  lCb1,
  lCb2,
  lCb4,
  ltTxDelay,
  fConnection,
  fMisc,
  // data fields of the protocol
  fDataField,
  t,
  ck,
  sRect,
  // status table and its entry panel
  fStatus,
  TDBList1,
  fEntry,
  cbStatus,
  cbDDE,
  te,
  cke,
  seRect,
  cmdInsert,
  cmdReplace,
  cmdDelete,
  cmdCancelEntry,
  // device commands
  fCommand,
  ckCmd,
  tCmdName,
  tCmdValue,
  tCmd,
  tCmdStart,
  tCmdEnd,
  sCmdRect,
  // OPC tag links
  fOPC,
  tNodeName,
  tServerName,
  tOpcTag,
  // DataMap, declared and without any effect
  fDataMap,
  tDMDBName,
  cmdDMBrowse,
  cbDM,
  tDMLen,
  optDM,
  ckDM,
  Count
};

enum class FieldKind { List, Text, Check, Option, Button, Label, Panel, Grid, Mark };

/// What is fixed of a field. Texts are the screen's own.
struct FieldRow {
  Control control;
  int first = 0, last = 0;  ///< elements that the row is about
  FieldKind kind;
  std::string_view captions{};  ///< beside or above the field, lines parted by "\n"
  std::string_view caption{};   ///< on the field itself; "&" marks its key
  std::string_view tip{};
  std::size_t limit = 0;         ///< characters that can be typed, 0 for no limit
  bool digitsOnly = false;       ///< takes digits and the keys that move and delete
  bool selectedOnEntry = false;  ///< its whole text is selected when it gets the focus
};

/// A field as it stands now.
struct SetupField {
  const FieldRow* row = nullptr;
  int element = 0;
  std::vector<std::string> items{};  ///< of a list
  int value = 0;                     ///< index of a list, -1 for no selection; 0 or 1 of a check box
  std::string text{};                ///< of a text field, and what stands on a button or label
  std::string tip{};
  bool enabled = true;
  bool visible = true;
  bool grey = false;      ///< back colour 0xE0E0E0 in place of 0xFFFFFF
  bool greyText = false;  ///< of the grid: fore colour 0x808080 in place of 0
  int left = 0, top = 0;  ///< of a panel that moves, in twips

  /// The chosen item of a list; empty for none.
  std::string Item() const;
};

/// A field by name and element; element 0 for a control that there is once.
struct FieldId {
  Control control;
  int element = 0;
  friend bool operator==(const FieldId&, const FieldId&) = default;
};

/// Sets the value of a list or check box and runs its rule.
using SetField = std::function<void(FieldId field, int value)>;

/// All fields of the setup screen, as named values without any rule.
class SetupFields {
 public:
  SetupFields();

  /// Raises 9 for an element that is not there.
  SetupField& At(Control control, int element = 0);
  const SetupField& At(Control control, int element = 0) const;
  SetupField& At(FieldId id) { return At(id.control, id.element); }
  const SetupField& At(FieldId id) const { return At(id.control, id.element); }
  /// All elements of a control, in order.
  std::span<SetupField> Array(Control control);
  std::span<const SetupField> Array(Control control) const;

  /// The field that a text such as "cb(3)" or "tCmdStart" names, in any case of letters; nothing for any other text.
  std::optional<FieldId> Find(std::string_view name) const;

 private:
  std::vector<std::vector<SetupField>> fields_;  // by control
};

/// Name of a control, as in the texts of this file; "cb".
std::string_view NameOf(Control control);
/// Name of a field: "cb(3)", or "tCmdStart" of a control that there is once.
std::string NameOf(const SetupField& field);
