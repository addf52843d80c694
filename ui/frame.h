#pragma once

#include <QSize>

class QPainter;

/// What stands under the system's name.
inline constexpr const char* kSubtitle = "Orvane scale communications manager";

/// The dark frame of the panel and the start-up form: lit from above down to `lightTo`, under a line in the accent's
/// colour. All in the painter's pixels.
void DrawFrame(QPainter& painter, const QSize& size, int lightTo);
