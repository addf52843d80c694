#include "ui/weigh_screen.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>

#include "ui/background.h"

namespace {

/// Pixels by which a cell's place is widened up and down when it is shown anew, so that a screen full of changed
/// cells is a few columns to the window system and not hundreds of small places.
constexpr int kJoin = 3;

}  // namespace

WeighScreen::WeighScreen(QWidget* parent)
    : QWidget(parent), canvas_([this](const QRect& area) {
        const QRect joined = area.adjusted(0, -kJoin, 0, kJoin);
        copied_ += joined;
        update(joined);
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
