#include <gtest/gtest.h>

#include <QApplication>

#include "ui/program_style.h"

/// Runs the tests on a screen that nobody sees.
int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("QT_LOGGING_RULES", "qt.qpa.*=false");
  const QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  StyleApplication();
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
