#include "config/setup/panels.h"

#include <string_view>

namespace {

constexpr int kOutOfView = -20000;

/// A panel and the button that shows and hides it.
struct PanelSwitch {
  Control button, panel;
  std::string_view openCaption, openTip, closedCaption, closedTip;
  int leftOn1024, leftOn800;
  bool switchesItself;  ///< the panel itself is enabled and disabled too
};

constexpr PanelSwitch kSwitches[] = {
    {Control::cmdCommands, Control::fCommand, "Commands <<", "Hide Device Commands...", "Commands >>",
     "Display / Edit Device Commands...", 450, 450, true},
    {Control::cmdOPC, Control::fOPC, "OPC Setup <<", "Hide OPC Setup...", "OPC Setup >>", "Display / Edit OPC Setup...",
     648, 678, false},
};

void EnableOthers(SetupFields& fields, bool enabled) {
  for (Control panel : {Control::fDataField, Control::fStatus, Control::fMisc}) fields.At(panel).enabled = enabled;
}

void Label(SetupFields& fields, const PanelSwitch& entry, bool open) {
  SetupField& button = fields.At(entry.button);
  button.text = open ? entry.openCaption : entry.closedCaption;
  button.tip = open ? entry.openTip : entry.closedTip;
}

void Close(SetupFields& fields, const PanelSwitch& entry) {
  SetupField& panel = fields.At(entry.panel);
  Label(fields, entry, false);
  panel.visible = false;
  panel.left = kOutOfView;
  if (entry.switchesItself) panel.enabled = false;
  EnableOthers(fields, true);
}

void Open(SetupFields& fields, const PanelSwitch& entry, int screenWidth) {
  SetupField& panel = fields.At(entry.panel);
  for (const PanelSwitch& other : kSwitches) {
    if (other.panel != entry.panel) HidePanel(fields, other.panel);
  }
  Label(fields, entry, true);
  panel.visible = true;
  panel.left = screenWidth > 800 ? entry.leftOn1024 : entry.leftOn800;
  if (entry.switchesItself) panel.enabled = true;
  EnableOthers(fields, false);
}

}  // namespace

void PressPanelButton(SetupFields& fields, Control button, int screenWidth) {
  for (const PanelSwitch& entry : kSwitches) {
    if (entry.button != button) continue;
    fields.At(entry.panel).visible ? Close(fields, entry) : Open(fields, entry, screenWidth);
  }
}

void HidePanel(SetupFields& fields, Control panel) {
  for (const PanelSwitch& entry : kSwitches) {
    if (entry.panel != panel) continue;
    if (fields.At(panel).visible) Close(fields, entry);
    fields.At(panel).left = kOutOfView;
  }
}

void HidePanels(SetupFields& fields) {
  for (const PanelSwitch& entry : kSwitches) Close(fields, entry);
}
