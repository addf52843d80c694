#pragma once

struct Engine;

/// Stops the scan, closes every link, hides the main window and brings back the start-up form, from which the
/// system is started again or ended. Faults in closing are not reported; the steps go on.
void CloseTXMWindow(Engine& engine);

/// The part of `CloseTXMWindow` that touches no window: for an end without a display.
void CloseLinks(Engine& engine);

/// The end of the program, as a task of the start-up form.
inline constexpr int kEndTask = 6;

/// Task 6 of the start-up form: closes every port that is still open and unloads all forms. The caller ends the
/// program. Other tasks do nothing.
void TaskCtrl(Engine& engine, int task);

/// Unload event of the main form: activity log, drawing objects, database engine, terminal link, buffers.
void Unload_Tarvex_MainForm(Engine& engine);
