#pragma once

class QDialog;
class QLabel;
class QString;
class QWidget;

/// What the small windows have in common.

/// Fonts, colours and buttons of the panel.
void ApplyDialogStyle(QDialog& dialog);
/// A caption beside or above a field.
QLabel* MakeCaption(const QString& text, QWidget* parent);
/// Shows the dialog above `owner`, which may be null, and gives it the keyboard.
void ShowAbove(QDialog& dialog, const QWidget* owner);
