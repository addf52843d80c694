#include "ui/fonts.h"

QFont TextFont(double pixels, QFont::Weight weight) {
  QFont font("Liberation Sans");
  font.setPixelSize(qRound(pixels));
  font.setWeight(weight);
  return font;
}

QFont NumberFont(int pixels) {
  QFont font("Liberation Mono");
  font.setStyleHint(QFont::Monospace);
  font.setPixelSize(pixels);
  return font;
}
