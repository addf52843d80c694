#pragma once

struct Engine;

/// What the notification area and the window do on the way there and back.
class TrayArea {
 public:
  virtual ~TrayArea() = default;
  /// Shows the icon with its tip, or if the desktop has no notification area makes the window small instead.
  virtual void AddIcon() = 0;
  virtual void RemoveIcon() = 0;
  /// Draws the eye from the window to the tray or back.
  virtual void Animate(bool toTray) = 0;
  virtual void HideWindow() = 0;
  virtual void ShowWindow() = 0;
};

/// What `cmdPutInTray` does: the scan goes on behind the icon. Nothing in debug mode.
void PutInTray(Engine& engine, TrayArea& area);

/// Double click on the icon.
void RestoreByDoubleClick(Engine& engine, TrayArea& area);

/// `mnuRestore` of the icon's menu. Nothing in debug mode.
void RestoreByMenu(Engine& engine, TrayArea& area);
