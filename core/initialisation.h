#pragma once

struct Engine;
struct Tables;

/// Custom formats 30 to 32 (39 to 41) are read only when a channel's setup selects them.
inline constexpr int kLastFormatReadAtStart = 38;

/// Has the next tick run the first initialisation from its beginning; until then no row shows a weight or a lamp.
void RequestFirstInitialisation(Tables& tables);

/// First initialisation: reads format files 0 to 38, then each channel's file and opens its link, and tells at its
/// end what is wrong with the formats. Any other fault is raised with `ch` at the channel concerned; the next call
/// goes on behind it and does not start over.
void FirstInitialisation(Engine& engine, int& ch);

/// Visit to a channel that is not connected: retries the terminal link, opens the channel again if its setup
/// asked for it (`ReinitChannel`, `ChanReopenPending`) or if the device has appeared that was not there
/// when it was opened (`ChanDeviceMissing`), otherwise keeps its weights empty.
void ServeUnconnectedChannel(Engine& engine, int ch);
