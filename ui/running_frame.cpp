#include "ui/running_frame.h"

#include <QPainter>
#include <QVariantAnimation>
#include <QWidget>

#include "ui/palette.h"

namespace {

constexpr int kDurationMs = 200;
constexpr int kWidth = 3;

/// Nothing but its edge is a window: what lies within stays seen.
class Frame : public QWidget {
 public:
  Frame() : QWidget(nullptr, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowTransparentForInput) {
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false);
  }
  void Stand(const QRect& place) {
    setGeometry(place);
    const QRect inside = rect().adjusted(kWidth, kWidth, -kWidth, -kWidth);
    setMask(QRegion(rect()).subtracted(inside));
  }

 protected:
  void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), Palette::Accent); }
};

}  // namespace

void RunFrame(const QRect& from, const QRect& to, std::function<void()> ended) {
  auto* const frame = new Frame;
  auto* const run = new QVariantAnimation(frame);
  run->setDuration(kDurationMs);
  run->setStartValue(from);
  run->setEndValue(to);
  QObject::connect(run, &QVariantAnimation::valueChanged, frame,
                   [frame](const QVariant& place) { frame->Stand(place.toRect()); });
  QObject::connect(run, &QVariantAnimation::finished, frame, [frame, ended = std::move(ended)] {
    frame->hide();
    frame->deleteLater();
    ended();
  });
  frame->Stand(from);
  frame->show();
  run->start();
}
