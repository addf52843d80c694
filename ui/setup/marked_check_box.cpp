#include "ui/setup/marked_check_box.h"

#include <QPainter>

#include "ui/magnification.h"
#include "ui/palette.h"

namespace {

constexpr int kWidth = 2;

}  // namespace

void MarkedCheckBox::paintEvent(QPaintEvent* event) {
  QCheckBox::paintEvent(event);
  if (!hasFocus()) return;
  QPainter painter(this);
  painter.setPen(Palette::Accent);
  for (int line = 0; line < Magnified(kWidth); ++line)
    painter.drawRect(rect().adjusted(line, line, -line - 1, -line - 1));
}
