#include "platform/qt/qt_event_loop.h"

#include <QCoreApplication>
#include <algorithm>

QtPeriodicTimer::QtPeriodicTimer() {
  timer_.setTimerType(Qt::PreciseTimer);
  QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { Tick(); });
}

void QtPeriodicTimer::SetInterval(int milliseconds) { timer_.setInterval(std::max(milliseconds, 1)); }

int QtPeriodicTimer::Interval() const { return timer_.interval(); }

void QtPeriodicTimer::SetEnabled(bool enabled) {
  if (enabled == timer_.isActive()) return;
  enabled ? timer_.start() : timer_.stop();
}

void QtPeriodicTimer::Tick() {
  if (ticking_ || !tick_) return;
  ticking_ = true;
  tick_();
  ticking_ = false;
}

void RunInMessageLoop(std::function<void()> action) {
  QMetaObject::invokeMethod(QCoreApplication::instance(), std::move(action), Qt::QueuedConnection);
}

void QtEventLoop::DoEvents() { QCoreApplication::processEvents(); }
