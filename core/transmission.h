#pragma once

struct Engine;

/// One tick of `TxTimer`: sends at most one character of each serial channel's `ChanTxQueue`, paced by
/// `ChanTxDelay` (milliseconds), and switches the transmit lamps. A channel without a delay sends nothing.
/// Faults of a port are taken by the trap; the other channels go on.
void TxTimerTick(Engine& engine);
