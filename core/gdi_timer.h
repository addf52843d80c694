#pragma once

struct Engine;

/// One tick of `GDITimer`: repaints the flagged cells of channels 0 to `MaxChannel`, with a sleep of `GDITimerSleep`
/// milliseconds behind each channel. Nothing is drawn before the window was painted or while it is in the tray.
/// The same tick serves every kind of screen: what a cell looks like is up to `MainForm::DrawItem`.
void GDITimerTick(Engine& engine);
