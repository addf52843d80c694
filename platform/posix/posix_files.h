#pragma once

#include "platform/files.h"

/// Files of the operating system. No call waits for anything but the disk: pipes and devices are refused for
/// reading and replacing.
class PosixFiles : public Files {
 public:
  /// A file that may only be read is read all the same. One above 64 MB is no file of this system and refused
  /// with 57.
  std::string OpenAndRead(const std::string& path) override;
  std::string Read(const std::string& path) override;
  /// The new content is written beside the file and safe on the disk before it takes the file's place. Mode and,
  /// where permitted, owner of the old file stay; of a link, what it leads to is replaced. A file marked
  /// read-only is refused.
  bool Exists(const std::string& path) override;
  void Replace(const std::string& path, std::string_view content) override;
  /// A line that does not fit on the disk leaves nothing of itself behind.
  void Append(const std::string& path, std::string_view line) override;
};
