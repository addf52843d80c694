#pragma once

#include <QApplication>
#include <cstdlib>

#include "tests/ui/wait_for.h"

/// The test program's application, on a screen that nobody sees. It is never taken down: what Qt holds itself is
/// gone when statics are.
inline QApplication& OffscreenApplication() {
  static int argc = 1;
  static char name[] = "test";
  static char* argv[] = {name, nullptr};
  static const int platform =
      setenv("QT_QPA_PLATFORM", "offscreen", 0) + setenv("QT_LOGGING_RULES", "qt.qpa.*=false", 0);
  static QApplication& application = *new QApplication(argc, argv);
  static_cast<void>(platform);
  QApplication::setQuitOnLastWindowClosed(false);
  return application;
}
