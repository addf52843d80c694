#pragma once

class MainForm;
struct Tables;

/// Absolute difference of the scan tick and an earlier one, so that a wrap of the count fires early once
/// rather than hang.
int TicksSince(const Tables& tables, int tick);

/// Sets a lamp, row `Item::Rx` to `Item::Error`, and its repaint flag if the lamp changes.
void SetLamp(Tables& tables, int ch, int item, bool on);

// The traffic lamps are drawn as they change; all others wait for the screen's timer.

/// Receive lamp on, paced by the scan tick: one tick after its last change, ten while the window is minimised,
/// when the tray icon shows it too.
void TurnRXLedON(Tables& tables, MainForm& mainForm, int ch);
/// The same in the row alone, for what a terminal on the network sends: the tray icon does not show it.
void TurnRXLedONInRow(Tables& tables, MainForm& mainForm, int ch);
/// Receive lamp off, under the same pacing.
void TurnRXLedOff(Tables& tables, MainForm& mainForm, int ch);
/// Transmit lamp on, under the same pacing.
void TurnTXLedON(Tables& tables, MainForm& mainForm, int ch);
/// Transmit lamp off, at least one tick after its last change.
void TurnTXLedOff(Tables& tables, MainForm& mainForm, int ch);
/// The same whenever that was.
void PutTXLedOut(Tables& tables, MainForm& mainForm, int ch);
