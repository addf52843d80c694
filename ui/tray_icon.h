#pragma once

#include <QIcon>
#include <QMenu>
#include <QObject>
#include <QRect>
#include <QSystemTrayIcon>
#include <functional>

#include "core/forms.h"

/// The icon in the notification area with its menu `mnuPopUp`.
class TrayIcon : public QObject {
 public:
  struct Handlers {
    std::function<void()> menuRestore;
    std::function<void()> doubleClick;
  };

  explicit TrayIcon(Handlers handlers);

  /// Whether the desktop has a notification area now.
  static bool AreaIsThere() { return QSystemTrayIcon::isSystemTrayAvailable(); }
  void Show();
  void Remove();
  void SetPicture(TrayPicture picture);
  /// The notification area has told where the icon is, which takes a moment after it was shown.
  bool KnowsPlace() const;
  /// Where the icon is or was last, or the corner where it would be.
  QRect Place() const;

 private:
  QSystemTrayIcon icon_;
  QMenu mnuPopUp_;
  QIcon pictures_[4];
  TrayPicture shown_ = TrayPicture::iIdle;
  QRect placeAtFirst_;  ///< what is told before the icon has its place
  QRect lastPlace_;
};
