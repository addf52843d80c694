#pragma once

struct Engine;

/// One tick of `Timer1`: lets pending events run, then serves channels 0 to `MaxChannel` once, each through all
/// its phases. A tick that comes while another runs is not counted. A fault ends the tick, not the program.
void Timer1Tick(Engine& engine);
