#pragma once

#include <string>

#include "core/log.h"
#include "core/tables.h"
#include "platform/files.h"

/// Full path of the format file of protocol `proto`. Raises 53 for a protocol that has no file, 9 outside the tables.
std::string FormatFilePath(const Tables& tables, int proto);

/// Loads the format file of protocol `proto` (0 to 41): framing, data fields, commands and status table, which come
/// into the tables all at once. A missing or empty file is logged, and the protocol runs with cleared fields. A damaged
/// or unreadable one raises as `CfgReader` tells and changes nothing. Its fault stands in `ProtoFault` until a load
/// succeeds. A status table that is not ended by a row without a name is loaded, but would not be walked: that is a
/// fault of the protocol too, though none is raised. Channels that are decoding keep the record they have in all three
/// cases. Logged are decimal rows that the protocol cannot carry, and numbers that no rule can use: framing characters
/// that are none, and a Max Stream Length outside 0 to 4096. Raises 53 for a protocol that has no file, 9 outside the
/// tables.
void LoadFormatFile(Tables& tables, Files& files, Log& log, int proto);

/// Writes the protocol's tables as they stand: 116 lines. Raises what files raise, 53 and 9 as above.
void SaveFormatFile(Tables& tables, Files& files, int proto);
