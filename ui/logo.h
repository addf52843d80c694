#pragma once

#include <QIcon>
#include <QRectF>

#include "core/forms.h"

class QPainter;

/// The system's mark, a scale's platform under a dial, into a square.
void DrawMark(QPainter& painter, const QRectF& place);

/// The icon of the windows and of the notification area, with the two lamps of the picture lit or not.
QIcon TrayIconPicture(TrayPicture picture);
