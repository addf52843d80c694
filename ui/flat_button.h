#pragma once

#include <QAbstractButton>

/// A button of the panel. It covers all of its rectangle, so that pressing it repaints no row behind it.
class FlatButton : public QAbstractButton {
 public:
  enum class Look { Row, Corner, Menu };

  /// `name` is the control's, as tests and style find it. "&" in the caption marks its key.
  FlatButton(QWidget* parent, Look look, const QString& name, const QString& caption);

 protected:
  void paintEvent(QPaintEvent* event) override;
  /// Return and Enter press the button as the space bar does.
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QColor Face() const;

  Look look_;
};
