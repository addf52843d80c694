#pragma once

#include <QCheckBox>

/// A check box that shows where the keyboard is by a rectangle around it, also without a text of its own.
class MarkedCheckBox : public QCheckBox {
 public:
  using QCheckBox::QCheckBox;

 protected:
  void paintEvent(QPaintEvent* event) override;
};
