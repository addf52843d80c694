#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "diagnostics/screen_layout.h"

struct Tables;

/// A control of `frmTXM` as the form is stored, in twips.
struct PanelControl {
  std::string_view name;
  std::string_view caption;
  std::string_view toolTip;
  int left, top, width, height;
};

/// The buttons in the order of the tab key; the row buttons stand for their 32.
enum class PanelButton { Refresh, Help, PutInTray, End, Detail, Setup };
inline constexpr int kPanelButtons = 6;

const PanelControl& ControlOf(PanelButton button);

/// The two large buttons in the upper right corner.
bool IsCornerButton(PanelButton button);

/// Where a button lies in the window, in pixels. `row` 0 to 31 for a row button, 0 for the others.
CellPlace ButtonPlace(const ScreenLayout& layout, PanelButton button, int row);

/// Whether a button can be pressed. While a detail view or the refresh dialog is open none can, so that only one
/// such dialog is open at a time. Rows of channels that the operating system does not allow stay grey.
bool ButtonEnabled(const Tables& tables, bool dialogOpen, PanelButton button, int row);

/// What `lDebugMode` shows: the counters of debug mode.
std::string DebugLabelText(const Tables& tables);

struct Modifiers {
  bool shift, control, alt;
};

/// The button that a key stands for; `keyCode` is the key's letter in upper case.
std::optional<PanelButton> ButtonForKey(int keyCode, Modifiers held);
