#pragma once

struct Engine;

/// Second half of the reception of a stream, behind the status walk: units lamp, status word, error state,
/// gross, tare and net by mode, ID, motion lamp and the weight log line, in this order.
/// Raises what formatting and the weight log raise.
void TakeStreamValues(Engine& engine, int ch);
