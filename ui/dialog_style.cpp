#include "ui/dialog_style.h"

#include <QDialog>
#include <QLabel>
#include <QWindow>

#include "platform/qt/keep_up.h"
#include "ui/fonts.h"
#include "ui/in_front.h"
#include "ui/palette.h"

namespace {

QString StyleSheet() {
  const QString rules =
      "QDialog { background: %1; }"
      "QLabel { color: %2; }"
      "QPushButton { background: %3; color: %2; border: 1px solid %4; border-radius: 3px; padding: 5px 16px;"
      "  min-width: 64px; }"
      "QPushButton:default { border-color: %7; font-weight: bold; }"
      "QPushButton:hover { background: %5; }"
      "QPushButton:pressed { background: %6; }"
      "QPushButton:focus { border: 2px solid %7; padding: 4px 15px; }"
      "QLineEdit { background: %8; color: %2; border: 1px solid %4; border-radius: 2px; padding: 3px 6px; }"
      "QLineEdit:focus { border: 2px solid %7; padding: 2px 5px; }"
      "ValueLabel { background: %8; color: %2; border: 1px solid %9; border-radius: 2px; padding: 2px 6px; }";
  return rules.arg(Palette::RowOther.name(), Palette::ButtonText.name(), Palette::Button.name(),
                   Palette::ButtonEdge.name(), Palette::ButtonHover.name(), Palette::ButtonDown.name(),
                   Palette::Accent.name(), Palette::Row.name(), Palette::RowRule.name());
}

}  // namespace

void ApplyDialogStyle(QDialog& dialog) {
  dialog.setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
  dialog.setFont(TextFont(13));
  dialog.setStyleSheet(StyleSheet());
  dialog.setAttribute(Qt::WA_QuitOnClose, false);
  KeepUp(dialog);
}

QLabel* MakeCaption(const QString& text, QWidget* parent) {
  auto* caption = new QLabel(text, parent);
  caption->setTextFormat(Qt::PlainText);
  return caption;
}

void ShowAbove(QDialog& dialog, const QWidget* owner) {
  if (owner && owner->windowHandle()) {
    dialog.winId();
    dialog.windowHandle()->setTransientParent(owner->windowHandle());
    const QRect frame = owner->frameGeometry();
    dialog.adjustSize();
    dialog.move(frame.center() - QPoint(dialog.width() / 2, dialog.height() / 2));
  }
  dialog.show();
  BringToFront(dialog);
}
