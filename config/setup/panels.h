#pragma once

#include "config/setup/fields.h"

/// The panels that take the place of the others on demand: one is open at a time.

/// Presses `cmdCommands` or `cmdOPC`: opens its panel, closing the other one first, or closes it. Any other button does
/// nothing. `screenWidth` in pixels decides where the OPC panel stands.
void PressPanelButton(SetupFields& fields, Control button, int screenWidth);

/// Takes `fCommand` or `fOPC` out of sight, open or not. One that was open is closed as its button does, or the others
/// would stay disabled.
void HidePanel(SetupFields& fields, Control panel);

/// Hides both and puts the captions of their buttons back.
void HidePanels(SetupFields& fields);
