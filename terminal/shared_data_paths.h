#pragma once

struct Tables;

/// Fills the paths of channel `ch` to the shared data of its terminal: "/v", the device ID without blanks at its ends,
/// and the field. Nothing checks the device ID; the library refuses what it does not know.
void SetupArcNetPaths(Tables& tables, int ch);
