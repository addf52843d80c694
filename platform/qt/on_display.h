#pragma once

class QWidget;

/// Puts a window into the middle of what the primary display leaves to windows; one as large as the display covers it.
void MoveToMiddle(QWidget& window);
/// The same whenever the display changes.
void StayInMiddle(QWidget& window);

/// Brings a window back that reaches over the edge of what its display leaves to windows.
void MoveOntoDisplay(QWidget& window);
