#pragma once

/// Version of the program, shown as major.minor.revision.
inline constexpr int kVersionMajor = 1;
inline constexpr int kVersionMinor = 0;
inline constexpr int kVersionRevision = 0;
