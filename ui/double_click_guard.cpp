#include "ui/double_click_guard.h"

#include <QApplication>
#include <QMouseEvent>

namespace {

constexpr int kSamePlace = 12;                 // pixels that a hand moves between two clicks
constexpr quint64 kSlowestDoubleClick = 1000;  // milliseconds

}  // namespace

DoubleClickGuard::DoubleClickGuard() { qApp->installEventFilter(this); }

bool DoubleClickGuard::eventFilter(QObject* watched, QEvent* event) {
  const bool press = event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick;
  // The window hears of it before any of its widgets, which would get the keyboard by it.
  if (!press || !watched->isWindowType()) return false;
  const auto& click = static_cast<const QMouseEvent&>(*event);
  const QPoint place = click.globalPosition().toPoint();
  const bool isSecond = click.timestamp() - time_ < kSlowestDoubleClick &&
                        (place - place_).manhattanLength() < kSamePlace && window_ != watched;
  if (isSecond) return true;
  window_ = watched;
  place_ = place;
  time_ = click.timestamp();
  return false;
}
