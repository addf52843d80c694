#pragma once

class QDialog;
class QLabel;
class QString;
class QWidget;

/// What the small windows have in common.

/// Fonts, colours and buttons of the panel.
void ApplyDialogStyle(QDialog& dialog);
/// The style sheet of all dialogs at the magnification of the moment, for boxes and menus that are made elsewhere.
QString DialogSheet();
/// A caption beside or above a field.
QLabel* MakeCaption(const QString& text, QWidget* parent);
/// Shows the dialog above `owner`, which may be null, and gives it the keyboard.
void ShowAbove(QDialog& dialog, const QWidget* owner);
