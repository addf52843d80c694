#pragma once

class Log;
class OpcControl;
struct Tables;

/// Connects the OPC client of a channel and creates its group and tags, with two log lines and two captions.
/// Whatever the server answers, the channel goes on: a failed connection shows in the log alone. `reinit`
/// selects the order and wording of a re-initialisation.
void ConnectOpc(Tables& tables, OpcControl& opc, Log& log, int ch, bool reinit);

/// Removes the group and ends the connection, with a log line for each. The connection is ended also when a step
/// before it raises.
void DisconnectOpc(OpcControl& opc, Log& log, int ch);

/// Exchanges the staged values with the server, unless an exchange is running; then the channel stays pending.
void UpdateOpc(Tables& tables, OpcControl& opc, int ch);
