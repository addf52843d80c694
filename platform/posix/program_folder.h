#pragma once

#include <string>

/// Where the .Cfg and log files lie: `$TARVEX_HOME` if set, else `$XDG_DATA_HOME/tarvex`, else
/// `~/.local/share/tarvex`. Always a full path without a slash at its end.
std::string ProgramFolder();

/// Creates the folder with copies of the .Cfg files of `shippedFormatsFolder`, whole or not at all. A folder that
/// exists is left as it is. Raises 53, 61, 70, 75 or 57 and names the folder that cannot take the
/// copies, or what cannot be read.
void PrepareProgramFolder(const std::string& folder, const std::string& shippedFormatsFolder);
