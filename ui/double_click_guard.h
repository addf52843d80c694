#pragma once

#include <QObject>
#include <QPoint>
#include <QPointer>

/// Keeps the second click of a double click from a window that came up under the pointer in between: a double click on
/// the panel's X is no click on the button that ends the program. Works as long as it lives, on the whole application.
class DoubleClickGuard : public QObject {
 public:
  DoubleClickGuard();

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QPointer<QObject> window_;  ///< of the last press
  QPoint place_;              ///< on the display
  quint64 time_ = 0;          ///< of the window system, milliseconds
};
