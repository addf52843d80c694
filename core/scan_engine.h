#pragma once

#include <optional>

#include "platform/run_time_error.h"

struct Engine;

/// One tick of `Timer1`: lets pending events run, then serves channels 0 to `MaxChannel` once, each through all
/// its phases. A tick that comes while another runs is not counted. A fault ends the tick, not the program:
/// it is returned for those who watch the scan, after the trap has dealt with it, and the next tick begins behind the
/// channel concerned and goes round.
std::optional<RunTimeError> Timer1Tick(Engine& engine);
