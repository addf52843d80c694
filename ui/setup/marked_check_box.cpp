#include "ui/setup/marked_check_box.h"

#include <QPainter>

#include "ui/palette.h"

void MarkedCheckBox::paintEvent(QPaintEvent* event) {
  QCheckBox::paintEvent(event);
  if (!hasFocus()) return;
  QPainter painter(this);
  painter.setPen(QPen(Palette::Accent, 2));
  painter.drawRect(rect().adjusted(1, 1, -1, -1));
}
