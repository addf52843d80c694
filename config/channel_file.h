#pragma once

#include <string>

#include "core/log.h"
#include "core/tables.h"
#include "platform/files.h"

/// Full path of the file of channel `ch`, whose name holds the display number: channel 0 has "Tarvex-SCALE1.Cfg".
/// Raises 9 for a channel outside the tables.
std::string ChannelFilePath(const Tables& tables, int ch);

/// Reads the 34 settings of channel `ch`. With several lines in the file the last one holds. A missing or empty
/// file is written with the defaults and read back; for a channel that was enabled until now that is a loss, marked in
/// `ChanSettingsLost` and logged. A damaged one raises as `CfgReader` tells and leaves the tables
/// as they were. Texts longer than 1024 characters are cut, and list indices that their list does not have are kept;
/// both are logged, once while the file says the same.
void ReadChannelFile(Tables& tables, Files& files, Log& log, int ch);

/// Writes them as they stand, without a trial of the port.
void WriteChannelFile(Tables& tables, Files& files, int ch);

/// Puts the defaults, with the channel's own number in its names, into the tables and into the file.
void RestoreChannelDefaults(Tables& tables, Files& files, int ch);
