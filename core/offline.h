#pragma once

struct Engine;

/// What the time-out does: the status word gets bit 16 and goes to every outlet, the row says so, and what was
/// received so far is forgotten, since nothing that comes later continues it. A channel that is offline stays as it is.
void FallOffline(Engine& engine, int ch);

/// Marks the weights of channel `ch` as old on every face at once, without waiting for the end of a visit: before its
/// port is closed, when it could not be opened, and when nobody visits it any more. Raises nothing; an outlet that
/// fails does not keep the others from it.
void MarkWeightsOld(Engine& engine, int ch);

/// Takes the weights of channel `ch` back, since its last stream could not be taken whole: they are empty, and marked
/// as above. The caption stays until a stream has been taken. Raises nothing.
void WithdrawWeights(Engine& engine, int ch);

/// For the timers that go on when something holds the scan: marks each channel offline whose time-out has passed,
/// because nobody sees what its device sends. The next tick puts that right.
void MarkChannelsOfAHeldScan(Engine& engine);
