#pragma once

#include <string>

/// Raises the `RunTimeError` for a refusal of the file system: 53, 57, 61, 70 or 75, as `Files` tells them apart.
/// `action` completes the sentence "FILE cannot be ...", `error` is the value of errno.
[[noreturn]] void RaiseFileFault(const std::string& path, const char* action, int error);
