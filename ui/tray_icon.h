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
  /// Where the icon is, or the corner where it would be.
  QRect Place() const;

 private:
  QSystemTrayIcon icon_;
  QMenu mnuPopUp_;
  QIcon pictures_[4];
  TrayPicture shown_ = TrayPicture::iIdle;
};

/// An outline that runs from one rectangle to the other in a fifth of a second; the caller goes on at once.
void AnimateOutline(const QRect& from, const QRect& to);
