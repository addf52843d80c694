#include "ui/program_style.h"

#include <QApplication>
#include <QMenu>
#include <QMessageBox>
#include <QPainter>
#include <QScreen>
#include <QStyleOption>

#include "diagnostics/screen_layout.h"
#include "ui/dialog_style.h"
#include "ui/logo.h"
#include "ui/magnification.h"
#include "ui/palette.h"

namespace {

constexpr int kFocusWidth = 2;

/// Boxes and menus come from elsewhere, at any time.
void GiveDialogSheet(QWidget& widget) {
  const bool ours = qobject_cast<QMessageBox*>(&widget) != nullptr || qobject_cast<QMenu*>(&widget) != nullptr;
  if (ours && widget.styleSheet() != DialogSheet()) widget.setStyleSheet(DialogSheet());
}

}  // namespace

void StyleApplication() {
  auto* const style = new ProgramStyle;
  QApplication::setStyle(style);
  QApplication::setPalette(style->standardPalette());
  QApplication::setWindowIcon(TrayIconPicture(TrayPicture::iIdle));
  FollowDisplay(LayoutFor(QGuiApplication::primaryScreen()->size().width()));
  OnMagnification(*style, [] {
    for (QWidget* const window : QApplication::topLevelWidgets()) GiveDialogSheet(*window);
  });
}

ProgramStyle::ProgramStyle() : QProxyStyle("Fusion") {}

int ProgramStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
  const int length = QProxyStyle::pixelMetric(metric, option, widget);
  return length > 1 ? Magnified(length) : length;
}

int ProgramStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                            QStyleHintReturn* returned) const {
  if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
  if (hint == SH_Slider_AbsoluteSetButtons) return Qt::LeftButton;  // a click goes straight to the nearest position
  return QProxyStyle::styleHint(hint, option, widget, returned);
}

QPalette ProgramStyle::standardPalette() const {
  QPalette palette = QProxyStyle::standardPalette();
  palette.setColor(QPalette::Window, Palette::RowOther);
  palette.setColor(QPalette::WindowText, Palette::ButtonText);
  palette.setColor(QPalette::ToolTipBase, Palette::Row);
  palette.setColor(QPalette::ToolTipText, Palette::ButtonText);
  palette.setColor(QPalette::Highlight, Palette::Accent);
  return palette;
}

/// A list that has the keyboard is marked as all others are; a style sheet would take its arrow away.
void ProgramStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                      const QWidget* widget) const {
  QProxyStyle::drawComplexControl(control, option, painter, widget);
  if (control != CC_ComboBox || !option->state.testFlag(State_HasFocus)) return;
  painter->setPen(Palette::Accent);
  for (int line = 0; line < Magnified(kFocusWidth); ++line) {
    painter->drawRect(option->rect.adjusted(line, line, -line - 1, -line - 1));
  }
}

void ProgramStyle::polish(QWidget* widget) {
  QProxyStyle::polish(widget);
  GiveDialogSheet(*widget);
}
