#include "ui/tray_icon.h"

#include <QAction>
#include <QGuiApplication>
#include <QScreen>

#include "ui/logo.h"

namespace {

constexpr TrayPicture kPictures[] = {TrayPicture::iIdle, TrayPicture::iRcv, TrayPicture::iXmit, TrayPicture::iRcvXmit};

}  // namespace

TrayIcon::TrayIcon(Handlers handlers) {
  for (TrayPicture picture : kPictures) pictures_[static_cast<int>(picture)] = TrayIconPicture(picture);
  icon_.setIcon(pictures_[static_cast<int>(shown_)]);
  icon_.setToolTip(" Orvane Tarvex");

  mnuPopUp_.setObjectName("mnuPopUp");
  QAction* const restore = mnuPopUp_.addAction("&Restore");
  restore->setObjectName("mnuRestore");
  mnuPopUp_.addSeparator()->setObjectName("mnuSpacer");
  mnuPopUp_.addAction("&Cancel")->setObjectName("mnuCancel");
  icon_.setContextMenu(&mnuPopUp_);

  connect(restore, &QAction::triggered, this, [run = std::move(handlers.menuRestore)] { run(); });
  connect(&icon_, &QSystemTrayIcon::activated, this,
          [run = std::move(handlers.doubleClick)](QSystemTrayIcon::ActivationReason reason) {
            if (reason == QSystemTrayIcon::DoubleClick) run();
          });
}

void TrayIcon::Show() {
  lastPlace_ = {};
  icon_.show();
}

void TrayIcon::Remove() {
  KnowsPlace();
  icon_.hide();
}

void TrayIcon::SetPicture(TrayPicture picture) {
  if (picture == shown_) return;
  shown_ = picture;
  icon_.setIcon(pictures_[static_cast<int>(picture)]);
}

bool TrayIcon::KnowsPlace() {
  const QRect place = icon_.geometry();
  if (!place.isEmpty()) lastPlace_ = place;
  return !lastPlace_.isEmpty();
}

QRect TrayIcon::Place() {
  if (KnowsPlace()) return lastPlace_;
  const QRect screen = QGuiApplication::primaryScreen()->geometry();
  constexpr int kSize = 24;
  return {screen.bottomRight() - QPoint(kSize, kSize), QSize(kSize, kSize)};
}
