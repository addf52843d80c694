#pragma once

class QKeyEvent;

/// The key code of an event as `KeyCode` counts them; 0 for a key that has none there.
int KeyCodeOf(const QKeyEvent& event);
