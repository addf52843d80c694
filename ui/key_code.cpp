#include "ui/key_code.h"

#include <QKeyEvent>

int KeyCodeOf(const QKeyEvent& event) {
  struct Row {
    Qt::Key key;
    int code;
  };
  constexpr Row kRows[] = {
      {Qt::Key_Backspace, 8}, {Qt::Key_Tab, 9},       {Qt::Key_Return, 13}, {Qt::Key_Enter, 13},  {Qt::Key_Escape, 27},
      {Qt::Key_PageUp, 33},   {Qt::Key_PageDown, 34}, {Qt::Key_End, 35},    {Qt::Key_Home, 36},   {Qt::Key_Left, 37},
      {Qt::Key_Up, 38},       {Qt::Key_Right, 39},    {Qt::Key_Down, 40},   {Qt::Key_Insert, 45}, {Qt::Key_Delete, 46},
  };
  for (const Row& row : kRows) {
    if (row.key == event.key()) return row.code;
  }
  if (event.key() >= Qt::Key_F1 && event.key() <= Qt::Key_F12) return 112 + event.key() - Qt::Key_F1;
  const bool isDigit = event.key() >= Qt::Key_0 && event.key() <= Qt::Key_9;
  return isDigit ? event.key() : 0;
}
