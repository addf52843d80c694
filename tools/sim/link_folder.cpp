#include "tools/sim/link_folder.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace sim {

LinkFolder::LinkFolder(const std::string& path) {
  const std::filesystem::path full = std::filesystem::absolute(path).lexically_normal();
  path_ = full.string();
  if (path_.size() > 1 && path_.ends_with('/')) path_.pop_back();
  std::filesystem::create_directories(path_);
  folder_ = Descriptor(open(path_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!folder_) throw std::system_error(errno, std::generic_category(), path_);
  if (flock(folder_.Get(), LOCK_EX | LOCK_NB) != 0) {
    throw std::runtime_error(path_ + " holds the links of another tarvex-sim that is running");
  }
}

}  // namespace sim
