#pragma once

#include <QProxyStyle>

/// One look for everything that no window of ours paints: the boxes, tips and menus of the program, and the small parts
/// of its dialogs, which follow the magnification.
class ProgramStyle : public QProxyStyle {
 public:
  ProgramStyle();

  int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* returned) const override;
  QPalette standardPalette() const override;
  void polish(QWidget* widget) override;
  using QProxyStyle::polish;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                          const QWidget* widget) const override;
};

/// Gives the application its style, its icon and the letters and sizes that the display has room for.
void StyleApplication();
