#include "ui/setup/setup_style.h"

#include <QDialog>

#include "ui/dialog_style.h"
#include "ui/fonts.h"
#include "ui/palette.h"

void ApplySetupStyle(QDialog& dialog) {
  ApplyDialogStyle(dialog);
  dialog.setFont(TextFont(12));
  const QString rules =
      "* { font-family: 'Liberation Sans'; font-size: 12px; }"
      "QGroupBox { border: 1px solid %1; border-radius: 3px; margin-top: 7px; font-weight: bold; }"
      "QGroupBox::title { subcontrol-origin: margin; left: 8px; padding: 0 3px; color: %2; }"
      "QGroupBox::title:disabled { color: %3; }"
      "QGroupBox#fEntry, QGroupBox#fCommand, QGroupBox#fOPC { background: %4; border: 2px solid %5; margin-top: 0;"
      "  padding-top: 16px; }"
      "QGroupBox#fEntry::title, QGroupBox#fCommand::title, QGroupBox#fOPC::title { subcontrol-origin: padding;"
      "  top: 2px; }"
      "QLabel { font-weight: normal; }"
      "QLabel:disabled, QCheckBox:disabled { color: %3; }"
      "QLineEdit { padding: 0 3px; font-weight: normal; background: white; }"
      "QLineEdit:focus { padding: 0 2px; }"
      "QLineEdit[grey=\"true\"] { background: #e0e0e0; }"
      "QLineEdit:disabled { color: %3; }"
      "QCheckBox { font-weight: normal; padding: 0 3px; border: 0; }"
      "QComboBox { font-weight: normal; combobox-popup: 0; }"
      "QComboBox QAbstractItemView::item { min-height: 17px; }"
      "QPushButton { padding: 2px 8px; min-width: 0; font-weight: normal; }"
      "QPushButton:disabled { color: %3; }"
      "QPushButton:focus { padding: 1px 7px; }"
      "QTableView { border: 2px solid %6; }"
      "QTableView:focus { border-color: %5; }"
      "QTableView { font-weight: normal; font-size: 12px; background: white; alternate-background-color: %4; }"
      "QHeaderView::section { font-weight: normal; font-size: 10px; padding: 0; background: %6; border: 0;"
      "  border-right: 1px solid %1; border-bottom: 1px solid %1; }"
      "QLabel#lWarning\\(0\\), QLabel#lWarning\\(1\\) { color: %7; font-weight: bold; font-size: 11px; }"
      "QLabel#lDEVICE\\(0\\) { font-size: 18px; font-weight: bold; }"
      "QLabel#lPortNote, QLabel[small=\"true\"] { font-size: 10px; }"
      "QHeaderView::section:disabled { color: %2; }"
      "QLabel#lDebugMode { color: %7; font-weight: bold; }";
  dialog.setStyleSheet(dialog.styleSheet() + rules.arg(Palette::ButtonEdge.name(), Palette::ButtonText.name(),
                                                       Palette::ButtonGreyedText.name(), Palette::RowOther.name(),
                                                       Palette::Accent.name(), Palette::Button.name(),
                                                       Palette::Danger.name()));
}
