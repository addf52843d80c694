#pragma once

#include <QApplication>

/// The test program's application, on a screen that nobody sees. It is there while tests run and goes before the
/// statics do, some of which are Qt's and need it.
QApplication& OffscreenApplication();
