#include "diagnostics/panel.h"

#include "core/tables.h"

namespace {

constexpr int kRowStep = 192;  // twips between two row buttons

constexpr PanelControl kControls[kPanelButtons] = {
    {"cmdRefresh", "&Refresh...", "", 10140, 2208, 900, 216},
    {"CmdHelp", "&Help...", "Display/Print Tarvex Information And Help...", 11052, 2208, 888, 216},
    {"cmdPutInTray", "__", "Run Tarvex In Background Mode...", 11100, 36, 564, 516},
    {"cmdEnd", "X", "Shut Off Tarvex Manager...", 11688, 36, 564, 516},
    {"cmdDetail", "<< Detail...", "Display Device Detail For This Scale Device Channel (Row)...", 10140, 2448, 900,
     204},
    {"cmdSetup", "<< Setup...", "Setup Tarvex Interface For This Scale Device Channel (Row)...", 11040, 2448, 900, 204},
};

/// How a layout reads the stored form: the size of a pixel, and how far buttons move from where they are stored.
struct FormScale {
  int twipsPerPixel;
  int moveX, moveY;              ///< row buttons, `cmdRefresh`, `CmdHelp`
  int cornerMoveX, cornerMoveY;  ///< `cmdPutInTray`, `cmdEnd`
};

constexpr FormScale kScale1024 = {12, 0, 0, 0, 0};
constexpr FormScale kScale800 = {15, -19, -13, -18, 1};

bool IsRowButton(PanelButton button) { return button == PanelButton::Detail || button == PanelButton::Setup; }

int RoundedPixels(int twips, int twipsPerPixel) { return (2 * twips + twipsPerPixel) / (2 * twipsPerPixel); }

struct PanelKey {
  int keyCode;
  PanelButton button;
};

constexpr PanelKey kKeys[] = {{'M', PanelButton::PutInTray}, {'X', PanelButton::End}};

}  // namespace

bool IsCornerButton(PanelButton button) { return button == PanelButton::PutInTray || button == PanelButton::End; }

const PanelControl& ControlOf(PanelButton button) { return kControls[static_cast<int>(button)]; }

CellPlace ButtonPlace(const ScreenLayout& layout, PanelButton button, int row) {
  const FormScale& scale = layout.width == 800 ? kScale800 : kScale1024;
  const PanelControl& control = ControlOf(button);
  const int top = control.top + (IsRowButton(button) ? kRowStep * row : 0);
  const auto pixels = [&](int twips) { return RoundedPixels(twips, scale.twipsPerPixel); };
  const int x = pixels(control.left);
  const int y = pixels(top);
  const bool corner = IsCornerButton(button);
  return {x + (corner ? scale.cornerMoveX : scale.moveX), y + (corner ? scale.cornerMoveY : scale.moveY),
          pixels(control.left + control.width) - x, pixels(top + control.height) - y};
}

bool ButtonEnabled(const Tables& tables, bool dialogOpen, PanelButton button, int row) {
  if (dialogOpen) return false;
  if (IsRowButton(button)) return row <= tables.MaxChannel;
  return button != PanelButton::PutInTray || tables.DebugMode == False;
}

std::string DebugLabelText(const Tables& tables) {
  return "Debug Mode: " + std::to_string(tables.DebugCommands) + " commands, OPC " +
         std::to_string(tables.DebugOpcUpdates) + ", skipped " + std::to_string(tables.DebugOpcSkipped);
}

std::optional<PanelButton> ButtonForKey(int keyCode, Modifiers held) {
  if (!held.shift && !held.control && !held.alt) return std::nullopt;
  for (const PanelKey& key : kKeys) {
    if (key.keyCode == keyCode) return key.button;
  }
  return std::nullopt;
}
