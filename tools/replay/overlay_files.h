#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/files.h"

/// The program's folder as a tool sees it: read from the disk, with other files in the place of some, and never
/// written. What is written stays in memory, and what is appended can be taken from here.
class OverlayFiles : public Files {
 public:
  struct Line {
    std::string path;
    std::string text;  ///< with its line end
  };

  explicit OverlayFiles(Files& disk) : disk_(disk) {}

  /// Has the file `path` read from `source`.
  void PutInPlace(const std::string& path, const std::string& source) { sources_[path] = source; }
  /// What has been written in place of files of the disk, by path.
  const std::map<std::string, std::string>& Written() const { return written_; }
  /// All lines appended since the last call, in order.
  std::vector<Line> TakeLines();
  /// The text with the file that is really read in place of the one that it names.
  std::string NameSources(std::string text) const;

  std::string OpenAndRead(const std::string& path) override { return Read(path); }
  std::string Read(const std::string& path) override;
  bool Exists(const std::string& path) override;
  void Replace(const std::string& path, std::string_view content) override { written_[path] = content; }
  void Append(const std::string& path, std::string_view line) override { lines_.push_back({path, std::string(line)}); }

 private:
  Files& disk_;
  std::map<std::string, std::string> sources_;
  std::map<std::string, std::string> written_;
  std::vector<Line> lines_;
};
