#include "ui/weigh_screen.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>

#include "ui/background.h"
#include "ui/magnification.h"

namespace {

/// Pixels by which a cell's place is widened up and down when it is shown anew, so that a screen full of changed
/// cells is a few columns to the window system and not hundreds of small places.
constexpr int kJoin = 3;

/// From so many changed cells on all between them is shown anew too: one large place is cheaper than many columns.
constexpr int kMany = 100;

}  // namespace

WeighScreen::WeighScreen(QWidget* parent)
    : QWidget(parent), canvas_([this](const QRect& area) {
        const QRectF place(area.adjusted(0, -kJoin, 0, kJoin));
        const QRect joined = QRectF(place.topLeft() * magnification_, place.size() * magnification_).toAlignedRect();
        copied_ += joined;
        if (++copies_ >= kMany) copied_ = copied_.boundingRect();
        update(copies_ >= kMany ? copied_ : QRegion(joined));
      }) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
}

void WeighScreen::SetLayout(const ScreenLayout& layout) {
  magnification_ = Magnification();
  resize(Magnified(layout.width), Magnified(layout.height));
  const qreal scale = devicePixelRatioF() * magnification_;
  canvas_.SetPicture(DrawBackground(layout, scale), scale);
}

void WeighScreen::paintEvent(QPaintEvent* event) {
  const bool onlyCells = event->region().subtracted(copied_).isEmpty();
  copied_ = {};
  copies_ = 0;
  if (!onlyCells && painted_) painted_();
  QPainter painter(this);
  const double pixel = magnification_ / canvas_.Scale();  // of the picture, in pixels of the window
  painter.scale(pixel, pixel);
  painter.drawImage(0, 0, canvas_.WindowImage());
}

void WeighScreen::mouseMoveEvent(QMouseEvent* event) {
  if (moved_) moved_((event->position() / magnification_).toPoint());
  QWidget::mouseMoveEvent(event);
}
