#include "platform/qt/on_display.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <algorithm>

void MoveToMiddle(QWidget& window) {
  const QScreen& screen = *QGuiApplication::primaryScreen();
  const QRect room = screen.availableGeometry();
  const bool fits = room.width() >= window.width() && room.height() >= window.height();
  const QRect place = fits ? room : screen.geometry();
  window.move(place.topLeft() + QPoint(place.width() - window.width(), place.height() - window.height()) / 2);
}

void StayInMiddle(QWidget& window) {
  for (auto change : {&QScreen::geometryChanged, &QScreen::availableGeometryChanged}) {
    QObject::connect(QGuiApplication::primaryScreen(), change, &window, [&window] { MoveToMiddle(window); });
  }
}

void MoveOntoDisplay(QWidget& window) {
  const QRect room = window.screen()->availableGeometry();
  const QSize size = window.frameGeometry().size();
  const QPoint last = room.bottomRight() - QPoint(size.width(), size.height()) + QPoint(1, 1);
  window.move(std::clamp(window.x(), room.left(), std::max(room.left(), last.x())),
              std::clamp(window.y(), room.top(), std::max(room.top(), last.y())));
}
