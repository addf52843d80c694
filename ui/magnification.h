#pragma once

#include <functional>

class QObject;
struct ScreenLayout;

/// How much larger than it is laid out everything is drawn, so that it can be read from afar on a large display: one
/// factor for all windows, in steps of an eighth.

/// The factor now; 1 until a display is followed.
double Magnification();
/// A length of a layout in pixels of a window.
int Magnified(double length);

/// From now on the factor is the largest at which `layout` fits into what the primary display leaves to windows,
/// whatever becomes of the display. A number in TARVEX_SCALE, 1 to 8, is the factor instead.
void FollowDisplay(const ScreenLayout& layout);
/// Has `take` called each time that the factor has changed, as long as `context` lives.
void OnMagnification(QObject& context, std::function<void()> take);
