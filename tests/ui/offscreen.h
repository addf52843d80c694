#pragma once

#include <QApplication>
#include <QElapsedTimer>
#include <cstdlib>
#include <functional>

/// The test program's application, on a screen that nobody sees.
inline QApplication& OffscreenApplication() {
  static int argc = 1;
  static char name[] = "test";
  static char* argv[] = {name, nullptr};
  static const int platform =
      setenv("QT_QPA_PLATFORM", "offscreen", 0) + setenv("QT_LOGGING_RULES", "qt.qpa.*=false", 0);
  static QApplication application(argc, argv);
  static_cast<void>(platform);
  QApplication::setQuitOnLastWindowClosed(false);
  return application;
}

/// Lets events run until the condition holds, ten seconds at most; tells whether it does.
inline bool WaitFor(const std::function<bool()>& condition) {
  QElapsedTimer time;
  time.start();
  while (!condition() && time.elapsed() < 10'000) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
  return condition();
}
