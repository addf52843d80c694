#pragma once

class QWidget;

/// Keeps `window` where it is seen, because a question that nobody sees holds everything else: a window manager that
/// makes it small gets it back at once, and when the display gets smaller it is moved with it.
void KeepUp(QWidget& window);
