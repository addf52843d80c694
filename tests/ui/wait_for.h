#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <functional>

/// Lets events run until the condition holds, `limitMs` at most; tells whether it does.
inline bool WaitFor(const std::function<bool()>& condition, int limitMs = 10'000) {
  QElapsedTimer time;
  time.start();
  QTimer wakeUp;  // conditions may come true without an event
  wakeUp.start(10);
  while (!condition() && time.elapsed() < limitMs) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  return condition();
}
