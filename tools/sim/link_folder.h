#pragma once

#include <string>

#include "platform/posix/descriptor.h"

namespace sim {

/// The folder of the links, made if it is missing and held by one simulator at a time, also one that was killed.
class LinkFolder {
 public:
  /// Raises an exception of the standard library if the folder cannot be had.
  explicit LinkFolder(const std::string& path);
  /// Its full path.
  const std::string& Path() const { return path_; }

 private:
  std::string path_;
  Descriptor folder_;
};

}  // namespace sim
