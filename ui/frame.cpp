#include "ui/frame.h"

#include <QPainter>

#include "ui/palette.h"

void DrawFrame(QPainter& painter, const QSize& size, int lightTo) {
  QLinearGradient light(0, 0, 0, lightTo);
  light.setColorAt(0, Palette::FrameLight);
  light.setColorAt(1, Palette::Frame);
  painter.fillRect(QRect(QPoint(0, 0), size), light);
  painter.fillRect(0, 0, size.width(), 2, Palette::Accent);
}
