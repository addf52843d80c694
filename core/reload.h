#pragma once

struct Engine;
struct Tables;

/// Takes the settings of channel `ch`, whose file another program has changed, while all others scan on: file and, if
/// need be, format are read, the weights are marked old on every face, port and OPC link are closed, and the next tick
/// opens the channel again as after its setup. Raises what the files raise, and what is wrong with the format, before
/// anything has changed: the channel goes on with what it had. Raises 9 for a channel that there is not, 5 while it is
/// being edited on the setup screen and while the system is stopped or has not opened its channels yet.
void ReloadChannel(Engine& engine, int ch);

/// Takes the format of protocol `proto` (0 to 41) from its file; the channels that use it go on with the new one.
/// Raises as above, 5 while a channel of the protocol is being edited.
void ReloadProtocol(Engine& engine, int proto);

/// To be called when a changed format of `proto` has been put in place: a point that the one of before found in the
/// stream may not get into weights of the new one.
void FindDecimalsAnew(Tables& tables, int proto);
