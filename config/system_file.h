#pragma once

#include "core/log.h"
#include "core/tables.h"
#include "platform/files.h"

/// Reads the six timer settings and the two switches from "TarvexSysSetup.Cfg". A missing or empty file is written
/// with the defaults and logged. A damaged one raises as `CfgReader` tells and leaves the tables as they were. For
/// numbers outside their limits (core/timer_limits.h) the defaults are taken, and one fault 9 that names them all is
/// raised once the rest is in place.
void ReadSystemFile(Tables& tables, Files& files, Log& log);

/// Writes them. Raises what files raise.
void WriteSystemFile(Tables& tables, Files& files);
