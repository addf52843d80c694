#pragma once

#include <QRect>
#include <functional>

/// An empty frame that runs from one rectangle of the display to another in a fifth of a second. The caller goes on at
/// once; `ended` is called when it has arrived.
void RunFrame(const QRect& from, const QRect& to, std::function<void()> ended);
