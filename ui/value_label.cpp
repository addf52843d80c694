#include "ui/value_label.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>

#include "ui/magnification.h"

namespace {

constexpr int kSmallestFont = 9;  // pixels
constexpr int kMostDrawn = 600;   // characters

}  // namespace

ValueLabel::ValueLabel(Fit fit, int columns, int lines, QWidget* parent)
    : QFrame(parent), fit_(fit), columns_(columns), lines_(lines) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void ValueLabel::SetText(const QString& text) {
  if (text == text_) return;
  text_ = text;
  drawn_ = text.size() > kMostDrawn ? text.left(kMostDrawn) + QChar(0x2026) : text;
  setAccessibleDescription(text);
  update();
}

QSize ValueLabel::sizeHint() const {
  ensurePolished();
  const QFontMetrics metrics(font());
  const QSize frame = size() - contentsRect().size();
  return QSize(columns_ * metrics.horizontalAdvance('0'), lines_ * metrics.lineSpacing()) + frame;
}

QSize ValueLabel::minimumSizeHint() const { return sizeHint(); }

QFont ValueLabel::FittingFont(int width) const {
  QFont fitting = font();
  const int needed = QFontMetrics(fitting).horizontalAdvance(drawn_);
  if (needed > width) fitting.setPixelSize(std::max(Magnified(kSmallestFont), fitting.pixelSize() * width / needed));
  return fitting;
}

bool ValueLabel::Fits() const {
  const QFontMetrics metrics(font());
  const QRect place = contentsRect();
  if (fit_ != Fit::Wrap) return metrics.horizontalAdvance(drawn_) <= place.width();
  return metrics.boundingRect(QRect(0, 0, place.width(), 0), Qt::TextWrapAnywhere, drawn_).height() <= place.height();
}

void ValueLabel::paintEvent(QPaintEvent* event) {
  QFrame::paintEvent(event);
  if (drawn_.isEmpty()) return;
  const QRect place = contentsRect();
  QPainter painter(this);
  painter.setClipRect(place);
  painter.setPen(palette().color(QPalette::WindowText));
  painter.setLayoutDirection(Qt::LayoutDirectionAuto);
  if (fit_ == Fit::Wrap) {
    painter.drawText(place, Qt::AlignLeft | Qt::AlignAbsolute | Qt::AlignTop | Qt::TextWrapAnywhere, drawn_);
    return;
  }
  const bool shrink = fit_ == Fit::Shrink;
  if (shrink) painter.setFont(FittingFont(place.width()));
  const int side = shrink ? Qt::AlignRight : Qt::AlignLeft;
  const QString shown = painter.fontMetrics().elidedText(drawn_, Qt::ElideRight, place.width());
  painter.drawText(place, side | Qt::AlignAbsolute | Qt::AlignVCenter | Qt::TextSingleLine, shown);
}

bool ValueLabel::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QFrame::event(event);
  const auto* help = static_cast<QHelpEvent*>(event);
  if (Fits()) {
    QToolTip::hideText();
  } else {
    QToolTip::showText(help->globalPos(), "<p>" + drawn_.toHtmlEscaped() + "</p>", this);
  }
  return true;
}
