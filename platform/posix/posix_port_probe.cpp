#include "platform/posix/posix_port_probe.h"

#include <dirent.h>
#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <memory>

namespace {

struct CloseFolder {
  void operator()(DIR* folder) const { closedir(folder); }
};

/// Calls `step` with each name in a folder until it returns true; false if it never did.
template <typename Step>
bool AnyIn(const std::string& path, const Step& step) {
  const std::unique_ptr<DIR, CloseFolder> folder(opendir(path.c_str()));
  if (!folder) return false;
  while (const dirent* const entry = readdir(folder.get())) {
    if (entry->d_name[0] != '.' && step(std::string(entry->d_name))) return true;
  }
  return false;
}

std::string LinkTarget(const std::string& path) {
  std::array<char, 256> target{};
  const ssize_t size = readlink(path.c_str(), target.data(), target.size());
  return size > 0 ? std::string(target.data(), static_cast<std::size_t>(size)) : std::string();
}

std::string NameOfProcess(const std::string& process) {
  std::ifstream file("/proc/" + process + "/comm");
  std::string name;
  std::getline(file, name);
  return name.empty() ? "a process" : name;
}

/// The process that has the device open, as "name (number)"; empty for none.
std::string HolderOf(const std::string& device) {
  const std::string self = std::to_string(getpid());
  std::string holder;
  AnyIn("/proc", [&](const std::string& process) {
    const bool isProcess = std::all_of(process.begin(), process.end(), [](unsigned char c) { return std::isdigit(c); });
    if (!isProcess || process == self) return false;
    const std::string folder = "/proc/" + process + "/fd";
    const bool holds = AnyIn(folder, [&](const std::string& fd) { return LinkTarget(folder + "/" + fd) == device; });
    if (holds) holder = NameOfProcess(process) + " (" + process + ")";
    return holds;
  });
  return holder;
}

std::string GroupOf(const struct stat& found) {
  const group* const entry = getgrgid(found.st_gid);
  return entry ? entry->gr_name : std::to_string(found.st_gid);
}

}  // namespace

PortCondition PosixPortProbe::Look(const std::string& address) {
  if (address.starts_with("tcp://")) return {PortState::Unknown};
  struct stat found {};
  if (stat(address.c_str(), &found) != 0 || !S_ISCHR(found.st_mode)) return {PortState::NotPresent};
  if (access(address.c_str(), R_OK | W_OK) != 0) return {PortState::NoPermission, GroupOf(found)};
  std::error_code unresolved;
  const std::filesystem::path device = std::filesystem::canonical(address, unresolved);
  std::string holder = HolderOf(unresolved ? address : device.string());
  if (!holder.empty()) return {PortState::InUse, std::move(holder)};
  return {PortState::Free};
}
