#include "ui/flat_button.h"

#include <QKeyEvent>
#include <QPainter>

#include "ui/fonts.h"
#include "ui/magnification.h"
#include "ui/palette.h"

namespace {

constexpr int kFocusWidth = 2;

/// Letters of the caption of a button that is laid out so high, in pixels.
double CaptionSize(FlatButton::Look look, double height) {
  switch (look) {
    case FlatButton::Look::Row:
      return height >= 16 ? 11 : 9;
    case FlatButton::Look::Corner:
      return height * 0.42;
    case FlatButton::Look::Menu:
      return height * 0.36;
  }
  return height / 2.0;
}

}  // namespace

FlatButton::FlatButton(QWidget* parent, Look look, const QString& name, const QString& caption)
    : QAbstractButton(parent), look_(look) {
  setObjectName(name);
  setText(caption);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setAttribute(Qt::WA_Hover);
  setFocusPolicy(Qt::StrongFocus);
}

QColor FlatButton::Face() const {
  const bool corner = look_ == Look::Corner;
  if (!isEnabled()) return corner ? Palette::Frame : Palette::ButtonGreyed;
  if (isDown()) return corner ? Palette::Accent : Palette::ButtonDown;
  if (underMouse()) return corner ? Palette::ButtonGreyed : Palette::ButtonHover;
  return corner ? Palette::FrameLight : Palette::Button;
}

void FlatButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRect edge = rect().adjusted(0, 0, -1, -1);
  painter.fillRect(rect(), Face());
  painter.setPen(hasFocus() ? Palette::Accent : look_ == Look::Corner ? Palette::FrameEdge : Palette::ButtonEdge);
  const int lines = hasFocus() ? Magnified(kFocusWidth) : 1;
  for (int line = 0; line < lines; ++line) painter.drawRect(edge.adjusted(line, line, -line, -line));

  const bool light = look_ == Look::Corner;
  const QColor ink = isEnabled() ? (light ? Palette::HeadingStrong : Palette::ButtonText) : Palette::ButtonGreyedText;
  const double captionSize = CaptionSize(look_, height() / Magnification()) * Magnification();
  painter.setFont(TextFont(captionSize, look_ == Look::Row ? QFont::Medium : QFont::Bold));
  painter.setPen(ink);
  painter.drawText(rect(), Qt::AlignCenter | Qt::TextShowMnemonic | Qt::TextSingleLine, text());
}

void FlatButton::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (enter && !event->isAutoRepeat()) {
    animateClick();
    return;
  }
  QAbstractButton::keyPressEvent(event);
}
