#pragma once

class QWidget;

/// A window manager that makes `window` small gets it back at once: a question that nobody sees holds everything else.
void KeepUp(QWidget& window);
