#pragma once

#include <QCheckBox>

/// A check box that shows where the keyboard is by a rectangle over its edge, because there is no room around it.
class MarkedCheckBox : public QCheckBox {
 public:
  using QCheckBox::QCheckBox;

 protected:
  void paintEvent(QPaintEvent* event) override;
};
