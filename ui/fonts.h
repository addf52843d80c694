#pragma once

#include <QFont>

/// The letters of all windows, `pixels` high; a typeface with the metrics of Arial.
QFont TextFont(double pixels, QFont::Weight weight = QFont::Normal);
/// Digits of one width, `pixels` high.
QFont NumberFont(int pixels);
