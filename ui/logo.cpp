#include "ui/logo.h"

#include <QPainter>
#include <QPixmap>

#include "ui/palette.h"

namespace {

/// In a square of 100, so that every size comes from one drawing.
void DrawScale(QPainter& painter) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(Palette::FrameEdge);
  painter.drawRoundedRect(QRectF(0, 0, 100, 100), 18, 18);
  painter.setBrush(Palette::Accent);
  painter.drawRoundedRect(QRectF(14, 66, 72, 12), 4, 4);  // platform
  painter.drawRoundedRect(QRectF(24, 80, 10, 8), 2, 2);   // feet
  painter.drawRoundedRect(QRectF(66, 80, 10, 8), 2, 2);
  painter.setBrush(Palette::HeadingStrong);
  painter.drawEllipse(QRectF(28, 14, 44, 44));  // dial
  painter.drawRect(QRectF(45, 54, 10, 12));
  painter.setPen(QPen(Palette::Frame, 5, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(QPointF(50, 36), QPointF(62, 24));  // hand
}

void DrawTrafficLamp(QPainter& painter, double x, bool lit) {
  painter.setPen(QPen(Palette::FrameEdge, 5));
  painter.setBrush(lit ? QColor(0, 255, 0) : Palette::LampWell);
  painter.drawEllipse(QPointF(x, 80), 17, 17);
}

}  // namespace

void DrawMark(QPainter& painter, const QRectF& place) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(place.topLeft());
  painter.scale(place.width() / 100, place.height() / 100);
  DrawScale(painter);
  painter.restore();
}

QIcon TrayIconPicture(TrayPicture picture) {
  const bool receiving = picture == TrayPicture::iRcv || picture == TrayPicture::iRcvXmit;
  const bool transmitting = picture == TrayPicture::iXmit || picture == TrayPicture::iRcvXmit;
  QIcon icon;
  for (int size : {16, 22, 24, 32, 48, 64}) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / 100.0, size / 100.0);
    DrawScale(painter);
    DrawTrafficLamp(painter, 20, receiving);
    DrawTrafficLamp(painter, 80, transmitting);
    icon.addPixmap(pixmap);
  }
  return icon;
}
