#pragma once

#include <string_view>

/// Pictures of the tray icon.
enum class TrayPicture { iIdle, iRcv, iXmit, iRcvXmit };

/// The start-up form `frmTarvexStartup`, which is also the menu that a stopped system returns to.
class StartupForm {
 public:
  virtual ~StartupForm() = default;
  virtual void SetRevision(std::string_view text) = 0;
  /// Makes the logo that fits a display 800 or 1024 wide visible; any other width changes neither.
  virtual void ShowLogo(int screenWidth) = 0;
  virtual void Show() = 0;
  virtual void Hide() = 0;
  /// Makes `CmdContinue` and the menu picture that fits the display visible.
  virtual void ShowMenu(int screenWidth) = 0;
  virtual void EnableContinue(bool enabled) = 0;
  virtual void FocusContinue() = 0;
  virtual void BusyPointer(bool busy) = 0;
  /// Unloads every form of the program.
  virtual void Unload() = 0;
};

/// The main window `frmTXM` as the engine sees it.
class MainForm {
 public:
  virtual ~MainForm() = default;
  /// Shows the form. The first time this loads it (`LoadMainForm`); every time it activates it
  /// (`ActivateMainForm`).
  virtual void Show() = 0;
  virtual void Hide() = 0;
  virtual void ApplyLayout(int screenWidth) = 0;
  virtual void SetRevision(std::string_view text) = 0;
  virtual void ShowDebugLabel(bool visible) = 0;
  virtual void BusyPointer(bool busy) = 0;
  /// While the setup screen is up the form takes no key and no click; its rows go on.
  virtual void Enable(bool enabled) = 0;
  /// What `cmdPutInTray` does.
  virtual void PutInTray() = 0;
  virtual void SetTrayPicture(TrayPicture picture) = 0;
  /// Repaints one cell of the weigh screen if its flag in `ChanDirty` is set (item 0 to 12).
  virtual void DrawItem(int ch, int item) = 0;
  /// Frees what the weigh screen draws with.
  virtual void ReleaseDrawing() = 0;
};

/// Live fields of the dialogs that look into the running scan.
class ScanDialogs {
 public:
  virtual ~ScanDialogs() = default;
  /// Element 0 to 22 of the label array `Ld` of the detail view.
  virtual void ShowDetail(int element, std::string_view text) = 0;
  /// Label 1 (scan), 2 (transmission) or 3 (drawing) of the refresh dialog, in ticks a second.
  virtual void ShowRate(int label, int ticksPerSecond) = 0;
};
