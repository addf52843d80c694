#pragma once

#include <string>
#include <string_view>

/// Whole-file operations on the program's folder. Paths are full paths of the platform.
/// Every operation raises a `RunTimeError` that names the file: 53 not found, 61 disk full, 70 permission
/// denied, 75 the path is a folder or cannot be reached, 57 any other fault of the device.
class Files {
 public:
  virtual ~Files() = default;

  /// Opens the file for binary access, which creates it empty if it is missing, and returns all it holds.
  virtual std::string OpenAndRead(const std::string& path) = 0;
  /// The same without creating anything: a missing file reads as empty.
  virtual std::string Read(const std::string& path) = 0;
  /// Whether there is a file of this name, be it empty.
  virtual bool Exists(const std::string& path) = 0;
  /// Puts `content` in place of the file, whole or not at all: after a fault or a power cut the file holds
  /// either the old or the new content.
  virtual void Replace(const std::string& path, std::string_view content) = 0;
  /// Opens the file, writes `line` behind its end and closes it again; creates a missing file.
  virtual void Append(const std::string& path, std::string_view line) = 0;
};
