#pragma once

class QWidget;

/// Brings a window that has just been shown to the front and gives it the keyboard, also where the window system takes
/// it away again with the end of a click elsewhere.
void BringToFront(QWidget& window);
