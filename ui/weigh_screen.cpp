#include "ui/weigh_screen.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>

#include "ui/background.h"

WeighScreen::WeighScreen(QWidget* parent)
    : QWidget(parent), canvas_([this](const QRect& area) {
        copied_ += area;
        update(area);
      }) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
}

void WeighScreen::SetLayout(const ScreenLayout& layout) {
  resize(layout.width, layout.height);
  canvas_.SetPicture(DrawBackground(layout, devicePixelRatioF()), devicePixelRatioF());
}

void WeighScreen::paintEvent(QPaintEvent* event) {
  const bool onlyCells = event->region().subtracted(copied_).isEmpty();
  copied_ = {};
  if (!onlyCells && painted_) painted_();
  QPainter painter(this);
  painter.scale(1 / canvas_.Scale(), 1 / canvas_.Scale());
  painter.drawImage(0, 0, canvas_.WindowImage());
}

void WeighScreen::mouseMoveEvent(QMouseEvent* event) {
  if (moved_) moved_(event->position().toPoint());
  QWidget::mouseMoveEvent(event);
}
