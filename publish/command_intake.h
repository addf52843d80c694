#pragma once

class Log;
class OpcControl;
class SerialPorts;
struct Tables;

/// One visit's look for a command of the automation client of channel `ch`: translates the code through the
/// command table of the channel's protocol, answers CMDSTAT with code + 100 (sent) or code + 1000 (refused), and
/// writes the device text to the port. A command whose parameter is not a finite number is refused.
/// A command whose text cannot leave the machine, because the line is gone or its output full, is refused too, with a
/// log line. Raises what the port raises other than 8012, after the answer has been given.
void TakeCommandFromAutomation(Tables& tables, SerialPorts& ports, Log& log, int ch);

/// The same for the OPC client, whose command stands in items 4 (CMD), 5 (CMDPARM) and 6 (CMDSTAT). Also has the
/// items exchanged with the server once in `ChanRefresh` ticks. A code above `kLargestCommandCode` is cleared, with a
/// log line.
void TakeCommandFromOpc(Tables& tables, SerialPorts& ports, Log& log, OpcControl& opc, int ch);
