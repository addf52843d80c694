#pragma once

struct Engine;

/// Reception cycle of one visit to channel `ch`: takes the bytes that have arrived, cuts a stream at the
/// protocol's terminator, decodes it into values, lamps and caption, and notices silence. Ends with the
/// receive lamp's off rule. Raises 8012 if the port is not open, and what formatting and the weight log raise.
void ReceptionCycle(Engine& engine, int ch);
