#pragma once

#include <QKeyEvent>
#include <QPushButton>
#include <QWidget>

/// The Enter key presses the button that has the focus, as it does in dialogs. False if the key or the focus is
/// another one.
inline bool PressFocusedButton(const QWidget& window, const QKeyEvent& event) {
  auto* button = qobject_cast<QPushButton*>(window.focusWidget());
  if (button == nullptr || (event.key() != Qt::Key_Return && event.key() != Qt::Key_Enter)) return false;
  button->click();
  return true;
}
