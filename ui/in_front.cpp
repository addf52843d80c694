#include "ui/in_front.h"

#include <QApplication>
#include <QTimer>
#include <QWidget>

namespace {

constexpr int kActivateAgainMs = 200;

}  // namespace

void BringToFront(QWidget& window) {
  window.raise();
  window.activateWindow();
  // Where another window goes away meanwhile, the keyboard may be lost, or only seem to be: then the window system has
  // nothing more to tell, and Qt is told.
  QTimer::singleShot(kActivateAgainMs, &window, [&window] {
    if (!window.isVisible() || QApplication::activeWindow() != nullptr) return;
    window.activateWindow();
    QApplication::setActiveWindow(&window);
  });
}
