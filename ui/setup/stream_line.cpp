#include "ui/setup/stream_line.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>

#include "platform/qt/text.h"
#include "ui/fonts.h"
#include "ui/magnification.h"
#include "ui/palette.h"

namespace {

constexpr int kHeight = 42;
constexpr int kValueWidth = 190;
constexpr int kWidestCell = 22, kNarrowestCell = 11;
constexpr int kRulerHeight = 13, kCellHeight = 22;

/// Control characters by their two- or three-letter names, without the marks around them.
QString CellText(char character) {
  QString text = ToVisibleText(std::string_view(&character, 1));
  if (text.size() > 1) text = text.mid(1, text.size() - 2);
  return text == " " ? QString() : text;
}

}  // namespace

StreamLine::StreamLine(QWidget* parent) : QWidget(parent) { setFixedHeight(kHeight); }

QSize StreamLine::sizeHint() const { return {600, kHeight}; }

void StreamLine::Show(const std::string& stream, int first, int last, const QString& value, const QString& notice) {
  if (stream == stream_ && first == first_ && last == last_ && value == value_ && notice == notice_) return;
  stream_ = stream;
  first_ = first;
  last_ = last;
  value_ = value;
  notice_ = notice;
  update();
}

int StreamLine::LaidOutWidth() const { return static_cast<int>(width() / Magnification()); }

int StreamLine::CellWidth() const {
  const int room = LaidOutWidth() - kValueWidth - 8;
  const int cells = std::max(1, static_cast<int>(stream_.size()));
  return std::clamp(room / cells, kNarrowestCell, kWidestCell);
}

void StreamLine::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), Palette::LampField);
  painter.scale(Magnification(), Magnification());
  const QRect line(0, 0, LaidOutWidth(), kHeight);
  const QRect right(line.width() - kValueWidth, 0, kValueWidth - 8, kHeight);
  painter.setFont(TextFont(12, QFont::Bold));
  painter.setPen(Palette::HeadingStrong);
  painter.drawText(right, Qt::AlignRight | Qt::AlignVCenter | Qt::TextWordWrap, value_);
  if (stream_.empty()) {
    painter.setFont(TextFont(12));
    painter.setPen(Palette::Heading);
    painter.drawText(line.adjusted(8, 0, -kValueWidth, 0), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap,
                     notice_);
    return;
  }
  const int cell = CellWidth();
  const int shown = std::min(static_cast<int>(stream_.size()), (line.width() - kValueWidth - 8) / cell);
  for (int i = 0; i < shown; ++i) {
    const int number = i + 1;
    const bool lit = first_ > 0 && number >= first_ && number <= last_;
    const QRect place(4 + i * cell, kRulerHeight + 3, cell - 1, kCellHeight);
    painter.fillRect(place, lit ? Palette::Accent : Palette::Row);
    const QString text = CellText(stream_[static_cast<std::size_t>(i)]);
    painter.setPen(Palette::ButtonText);
    painter.setFont(text.size() > 1 ? TextFont(std::min(8, cell / 2 + 1)) : NumberFont(std::min(14, cell + 1)));
    painter.drawText(place, Qt::AlignCenter, text);
    if (cell < 16 && number % 5 != 0 && number != 1 && !(lit && number == first_)) continue;
    painter.setFont(TextFont(9));
    painter.setPen(lit ? Palette::HeadingStrong : Palette::Heading);
    painter.drawText(QRect(place.x() - 6, 2, cell + 12, kRulerHeight), Qt::AlignCenter, QString::number(number));
  }
}

/// The code of the character under the pointer.
bool StreamLine::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  const auto& help = *static_cast<QHelpEvent*>(event);
  const int x = static_cast<int>(help.pos().x() / Magnification());
  const int at = (x - 4) / CellWidth();
  if (x < 4 || at >= static_cast<int>(stream_.size()) || x > LaidOutWidth() - kValueWidth) {
    QToolTip::hideText();
    return true;
  }
  const int code = static_cast<unsigned char>(stream_[static_cast<std::size_t>(at)]);
  QToolTip::showText(help.globalPos(),
                     QString("Character %1: decimal %2, hex %3").arg(at + 1).arg(code).arg(code, 2, 16, QChar('0')),
                     this);
  return true;
}
