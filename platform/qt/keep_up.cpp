#include "platform/qt/keep_up.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QTimer>
#include <QWidget>

#include "platform/qt/on_display.h"

namespace {

class UpKeeper : public QObject {
 public:
  explicit UpKeeper(QWidget& window) : QObject(&window), window_(window) {
    window.installEventFilter(this);
    connect(QGuiApplication::primaryScreen(), &QScreen::availableGeometryChanged, this, [this] {
      if (window_.isVisible()) MoveOntoDisplay(window_);
    });
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    const bool small = event->type() == QEvent::WindowStateChange && window_.isMinimized();
    if (small && window_.isVisible()) QTimer::singleShot(0, this, [this] { Restore(); });
    return QObject::eventFilter(watched, event);
  }

 private:
  void Restore() {
    if (!window_.isVisible() || !window_.isMinimized()) return;
    window_.showNormal();
    window_.raise();
    window_.activateWindow();
  }

  QWidget& window_;
};

}  // namespace

void KeepUp(QWidget& window) { new UpKeeper(window); }
