#pragma once

#include <string>

struct Tables;

/// Fills `PortSettingsTable`, `UnitsTable`, `DecimalMaskTable` and `ProtoFileName`, and `LastFixedProtocol`.
void FillFixedTables(Tables& tables);

/// Name of a protocol as people choose it, 0 to 41; empty for any other number.
std::string ProtocolName(int proto);

/// Full path of a file whose name begins with a path separator, written as "\" or "/".
std::string PathInProgramFolder(const Tables& tables, const std::string& name);

/// Display number of a channel, as shown and spoken and as used in file names.
std::string DisplayNumber(int ch);
