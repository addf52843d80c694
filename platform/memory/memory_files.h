#pragma once

#include <map>
#include <string>
#include <string_view>

#include "platform/files.h"

/// Files in memory; a path in `broken` raises its error number at every use.
class MemoryFiles : public Files {
 public:
  std::map<std::string, std::string> content;
  std::map<std::string, int> broken;

  std::string OpenAndRead(const std::string& path) override;
  std::string Read(const std::string& path) override;
  bool Exists(const std::string& path) override { return content.contains(path); }
  void Replace(const std::string& path, std::string_view text) override;
  void Append(const std::string& path, std::string_view line) override;

 private:
  void Check(const std::string& path) const;
};
