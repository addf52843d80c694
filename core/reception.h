#pragma once

struct Engine;

/// Reception cycle of one visit to channel `ch`: takes the bytes that have arrived, cuts a stream at the
/// protocol's terminator, decodes it into values, lamps and caption, and notices silence. A port that is not open
/// reads as silence. Raises what formatting, publishing and the weight log raise.
void ReceptionCycle(Engine& engine, int ch);

/// Lets a channel that reads streams fall offline if no end of one has come for `ChanTimeout` ticks; 0 is no time-out.
void CheckTimeout(Engine& engine, int ch);
