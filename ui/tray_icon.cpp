#include "ui/tray_icon.h"

#include "ui/logo.h"

TrayIcon::TrayIcon() {
  QAction* restore = menu_.addAction("&Restore");
  restore->setObjectName("mnuRestore");
  menu_.addSeparator()->setObjectName("mnuSpacer");
  menu_.addAction("&Cancel")->setObjectName("mnuCancel");
  QObject::connect(restore, &QAction::triggered, &icon_, [this] {
    if (restoreByMenu_) restoreByMenu_();
  });
  icon_.setToolTip(" Orvane Tarvex");
  icon_.setContextMenu(&menu_);
  icon_.setIcon(TrayIconPicture(picture_));
  QObject::connect(&icon_, &QSystemTrayIcon::activated, &icon_, [this](QSystemTrayIcon::ActivationReason reason) {
    if (reason == QSystemTrayIcon::DoubleClick && doubleClick_) doubleClick_();
  });
}

void TrayIcon::Show() { icon_.show(); }

void TrayIcon::Remove() { icon_.hide(); }

void TrayIcon::SetPicture(TrayPicture picture) {
  if (!icon_.isVisible() || picture == picture_) return;
  picture_ = picture;
  icon_.setIcon(TrayIconPicture(picture));
}
