#pragma once

#include <cstdint>
#include <string>

/// The entries of `libvantapi32.so`, with C linkage.
struct VantEntries {
  std::int16_t (*registerProcess)(std::int16_t node) = nullptr;
  std::int16_t (*closeProcess)() = nullptr;
  std::int16_t (*read)(const char* path, std::int16_t length, char* buffer, std::int16_t* count) = nullptr;
  std::int16_t (*write)(const char* path, std::int16_t length, const char* buffer) = nullptr;
  std::int16_t (*sendKeystroke)(std::int16_t terminal, std::int16_t mode, std::int16_t key) = nullptr;
};

/// Binds the library at run time: the file that the environment variable TARVEX_VANTAPI names, else the one in
/// `programFolder`, else the system's. It stays bound until the program ends, since it may have threads of its own.
/// On a failure `entries` is left as it was and the reason is returned, with the file in it; empty on success.
std::string BindVantLibrary(const std::string& programFolder, VantEntries& entries);
