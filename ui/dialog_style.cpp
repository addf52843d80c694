#include "ui/dialog_style.h"

#include <QDialog>
#include <QLabel>
#include <QWindow>

#include "platform/qt/keep_up.h"
#include "platform/qt/on_display.h"
#include "ui/fonts.h"
#include "ui/in_front.h"
#include "ui/magnified_window.h"
#include "ui/palette.h"

namespace {

constexpr const char* kFollows = "followsMagnification";

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
      "QCheckBox, QRadioButton, QSlider { border: 2px solid transparent; border-radius: 3px; }"
      "QCheckBox:focus, QRadioButton:focus, QSlider:focus { border-color: %7; outline: none; }"
      "QMenu { background: %1; color: %2; border: 1px solid %4; padding: 3px; }"
      "QMenu::item { padding: 6px 24px; }"
      "QMenu::item:selected { background: %7; color: white; }"
      "QMenu::separator { height: 1px; background: %9; margin: 3px; }"
      "ValueLabel { background: %8; color: %2; border: 1px solid %9; border-radius: 2px; padding: 2px 6px; }";
  return rules.arg(Palette::RowOther.name(), Palette::ButtonText.name(), Palette::Button.name(),
                   Palette::ButtonEdge.name(), Palette::ButtonHover.name(), Palette::ButtonDown.name(),
                   Palette::Accent.name(), Palette::Row.name(), Palette::RowRule.name());
}

}  // namespace

QString DialogSheet() { return MagnifiedSheet(StyleSheet()); }

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
  if (!dialog.property(kFollows).toBool()) {
    dialog.setProperty(kFollows, true);
    FollowMagnification(dialog);  // everything is in its place now
  }
  if (owner && owner->windowHandle()) {
    dialog.winId();
    dialog.windowHandle()->setTransientParent(owner->windowHandle());
    const QRect frame = owner->frameGeometry();
    dialog.adjustSize();
    dialog.move(frame.center() - QPoint(dialog.width() / 2, dialog.height() / 2));
    MoveOntoDisplay(dialog);
  }
  dialog.setAttribute(Qt::WA_KeyboardFocusChange);  // who has the keyboard is seen also before a key was pressed
  dialog.show();
  BringToFront(dialog);
}
