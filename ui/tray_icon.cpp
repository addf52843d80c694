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
  icon_.show();
  placeAtFirst_ = icon_.geometry();
}

void TrayIcon::Remove() {
  lastPlace_ = icon_.geometry();
  icon_.hide();
}

void TrayIcon::SetPicture(TrayPicture picture) {
  if (picture == shown_) return;
  shown_ = picture;
  icon_.setIcon(pictures_[static_cast<int>(picture)]);
}

bool TrayIcon::KnowsPlace() const {
  const QRect place = icon_.geometry();
  return !place.isEmpty() && place != placeAtFirst_;
}

QRect TrayIcon::Place() const {
  const QRect place = icon_.isVisible() ? icon_.geometry() : lastPlace_;
  if (!place.isEmpty()) return place;
  const QRect screen = QGuiApplication::primaryScreen()->geometry();
  constexpr int kSize = 24;
  return {screen.bottomRight() - QPoint(kSize, kSize), QSize(kSize, kSize)};
}
