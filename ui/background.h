#pragma once

#include <QImage>

#include "diagnostics/screen_layout.h"

/// The picture behind the weigh screen: grid, column heads and the system's name, drawn for this layout at `scale`
/// device pixels to a pixel of the layout.
QImage DrawBackground(const ScreenLayout& layout, qreal scale);
