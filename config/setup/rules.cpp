#include "config/setup/rules.h"

#include <initializer_list>
#include <string_view>

#include "config/setup/panels.h"
#include "protocol/number.h"

namespace {

constexpr int kPacketProtocol = 0;
constexpr int kOtherDriver = 4;
constexpr int kMiscTopAlone = 1848, kMiscTopBelow = 6360;

/// What the three kinds of connection need.
struct Connection {
  bool terminal, serial;
  std::string_view refresh, txDelay;  ///< put in place of nothing or 0; empty: left as it is
};

constexpr Connection kConnections[] = {
    {.terminal = false, .serial = true, .refresh = "50", .txDelay = "5"},  // PC Serial Port
    {.terminal = true, .serial = false, .refresh = "50", .txDelay = "0"},  // ArcNet (Vantor)
    {.terminal = false, .serial = false, .refresh = {}, .txDelay = {}},    // Other...
};

void Enable(SetupFields& fields, std::initializer_list<Control> controls, bool enabled) {
  for (Control control : controls) {
    for (SetupField& field : fields.Array(control)) field.enabled = enabled;
  }
}

/// A field is white when it can be used.
void EnableInColour(SetupField& field, bool enabled) {
  field.enabled = enabled;
  field.grey = !enabled;
}

void FillIfZero(SetupField& field, std::string_view standard) {
  if (!standard.empty() && NumericValue(field.text) == 0) field.text = standard;
}

bool IsChecked(const SetupFields& fields, Control check) { return fields.At(check).value != 0; }

}  // namespace

void ApplyConnectionRule(SetupFields& fields, const SetField& set) {
  const int kind = fields.At(Control::cb, 0).value;
  if (kind < 0 || kind >= static_cast<int>(std::size(kConnections))) return;
  const Connection& connection = kConnections[kind];
  fields.At(Control::ckEnableVVant).enabled = connection.terminal;
  Enable(fields, {Control::lCb1, Control::lCb2, Control::ckXONXOFF}, connection.serial);
  EnableInColour(fields.At(Control::cb, 1), connection.serial);
  EnableInColour(fields.At(Control::cb, 2), connection.serial);
  Enable(fields, {Control::tTxDelay, Control::ltTxDelay},
         connection.serial && IsChecked(fields, Control::ckBidirectional));
  fields.At(Control::tTxDelay).grey = !connection.serial;
  FillIfZero(fields.At(Control::tRefresh), connection.refresh);
  FillIfZero(fields.At(Control::tTxDelay), connection.txDelay);
  for (int list : {1, 2, 3, 4}) {
    if (fields.At(Control::cb, list).value < 0) set({Control::cb, list}, 0);
  }
}

void ApplyProtocolRule(SetupFields& fields, const SetField& set, int proto) {
  const bool packets = proto == kPacketProtocol;
  SetupField& opc = fields.At(Control::ckOPC);
  SetupField& bidirectional = fields.At(Control::ckBidirectional);
  Enable(fields, {Control::lCb4}, packets);
  EnableInColour(fields.At(Control::cb, 4), packets);
  fields.At(Control::fDataField).visible = !packets;
  fields.At(Control::fStatus).visible = !packets;
  fields.At(Control::ckDDEServer).enabled = !packets;
  opc.enabled = !packets;
  if (packets) set({Control::ckOPC}, 0);
  if (!packets && bidirectional.value == 1 && !bidirectional.enabled) set({Control::ckBidirectional}, 0);
  if (packets) set({Control::ckBidirectional}, 1);
  bidirectional.enabled = !packets;
  if (packets) {
    fields.At(Control::ckPollForData).enabled = false;
    set({Control::ckPollForData}, 0);
    fields.At(Control::cmdCommands).enabled = false;
    HidePanel(fields, Control::fCommand);
  }
  fields.At(Control::fMisc).top = packets ? kMiscTopAlone : kMiscTopBelow;
  fields.At(Control::ckInteractiveDBErrors).enabled = packets;
}

void FixedFormatMode(SetupFields& fields, bool fixed) {
  constexpr int kMaxStreamLength = 10, kCommands = 10;
  const bool editable = !fixed;
  for (SetupField& field : fields.Array(Control::t)) {
    if (field.element != kMaxStreamLength) EnableInColour(field, editable);
  }
  for (Control texts : {Control::tCmd, Control::tCmdStart, Control::tCmdEnd}) {
    for (SetupField& field : fields.Array(texts)) EnableInColour(field, editable);
  }
  for (SetupField& field : fields.Array(Control::ckCmd)) {
    if (field.element < kCommands) field.enabled = editable;
  }
  Enable(fields, {Control::ck, Control::TDBList1}, editable);
  fields.At(Control::TDBList1).greyText = fixed;
}

void ApplyDriverRule(SetupFields& fields) {
  EnableInColour(fields.At(Control::tOtherDriver), fields.At(Control::cb, 4).value == kOtherDriver);
}

void ApplyCheckRule(SetupFields& fields, Control check) {
  const bool checked = IsChecked(fields, check);
  switch (check) {
    case Control::ckBidirectional:
      Enable(fields, {Control::cmdCommands, Control::ckPollForData, Control::tTxDelay, Control::ltTxDelay}, checked);
      if (!checked) HidePanel(fields, Control::fCommand);
      return;
    case Control::ckAsciiLogFile:
      return EnableInColour(fields.At(Control::tAsciiLogFileName), checked);
    case Control::ckOPC:
      if (!checked) HidePanel(fields, Control::fOPC);
      fields.At(Control::cmdOPC).enabled = checked;
      return;
    case Control::ckDataMap:
      fields.At(Control::cmdDataMap).enabled = checked;
      return;
    default:
      return;
  }
}
