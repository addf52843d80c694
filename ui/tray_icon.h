#pragma once

#include <QMenu>
#include <QSystemTrayIcon>
#include <functional>

#include "core/forms.h"

/// The icon in the notification area with its popup menu `mnuPopUp`.
class TrayIcon {
 public:
  TrayIcon();

  /// False on a desktop without a notification area.
  static bool Available() { return QSystemTrayIcon::isSystemTrayAvailable(); }
  void OnRestoreByMenu(std::function<void()> handler) { restoreByMenu_ = std::move(handler); }
  void OnDoubleClick(std::function<void()> handler) { doubleClick_ = std::move(handler); }

  void Show();
  void Remove();
  bool Shown() const { return icon_.isVisible(); }
  /// Changes the picture while the icon is shown.
  void SetPicture(TrayPicture picture);

 private:
  QMenu menu_;
  QSystemTrayIcon icon_;
  std::function<void()> restoreByMenu_;
  std::function<void()> doubleClick_;
  TrayPicture picture_ = TrayPicture::iIdle;
};
