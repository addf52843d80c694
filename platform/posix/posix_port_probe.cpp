#include "platform/posix/posix_port_probe.h"

#include <dirent.h>
#include <fcntl.h>
#include <grp.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <sstream>

#include "platform/posix/descriptor.h"
#include "platform/posix/line_settings.h"
#include "platform/posix/tcp_link.h"

namespace {

using State = PortStanding::State;

struct CloseFolder {
  void operator()(DIR* folder) const { closedir(folder); }
};
using Folder = std::unique_ptr<DIR, CloseFolder>;

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

/// Content of a file that the system or another program keeps, empty if it cannot be read. Never waits, whatever
/// stands at `path`.
std::string ReadNow(const std::string& path) {
  const Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  struct stat found {};
  if (!file || fstat(file.Get(), &found) != 0 || !S_ISREG(found.st_mode)) return {};
  std::string content;
  char part[4096];
  ssize_t count = 0;
  while ((count = read(file.Get(), part, sizeof part)) > 0) content.append(part, static_cast<std::size_t>(count));
  return content;
}

/// A process number at the start of `text`; 0 if there is none.
int ProcessNumber(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  int number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return std::max(0, number);
}

/// Read from the file itself: the system's look-up may ask a server on the network, and wait for it.
std::string GroupName(gid_t group) {
  const std::unique_ptr<std::FILE, CloseFile> file(std::fopen("/etc/group", "re"));
  ::group entry{};
  ::group* found = nullptr;
  char text[8192];
  while (file && fgetgrent_r(file.get(), &entry, text, sizeof text, &found) == 0 && found != nullptr) {
    if (found->gr_gid == group) return found->gr_name;
  }
  return std::to_string(group);
}

bool IsPseudoTerminal(dev_t device) { return major(device) >= 136 && major(device) <= 143; }

/// A device whose holder is looked for.
struct Sought {
  struct stat node;
  PortStanding* standing;

  /// Several nodes can stand for one line; pseudo-terminals of one number exist in each container.
  bool Is(const struct stat& other) const {
    if (!S_ISCHR(other.st_mode) || other.st_rdev != node.st_rdev) return false;
    return !IsPseudoTerminal(node.st_rdev) || (other.st_dev == node.st_dev && other.st_ino == node.st_ino);
  }
  void HeldBy(int pid) const {
    if (standing->state == State::InUse && !standing->ours) return;
    standing->state = State::InUse;
    standing->pid = pid;
    standing->ours = pid == getpid();
    standing->program = ReadNow("/proc/" + std::to_string(pid) + "/comm");
    if (standing->program.ends_with('\n')) standing->program.pop_back();
  }
};

/// What the system knows of a character device that is there.
State StateOf(const struct stat& node) {
  const std::string about =
      "/sys/dev/char/" + std::to_string(major(node.st_rdev)) + ":" + std::to_string(minor(node.st_rdev));
  std::error_code unknown;
  const std::filesystem::path subsystem = std::filesystem::read_symlink(about + "/subsystem", unknown);
  if (!unknown && subsystem.filename() != "tty") return State::NotADevice;
  if (ReadNow(about + "/type") == "0\n") return State::NotPresent;  // a name kept for hardware that may be there
  return State::Present;
}

/// All that can be told of an address but its holder. Fills `node` for a device that may be used.
PortStanding Look(const std::string& address, struct stat& node) {
  if (const auto server = ParseTcpAddress(address)) {
    return {State::Unknown, "tcp://" + server->host + ":" + server->port};
  }
  PortStanding standing{State::NotADevice, address};
  if (!address.starts_with('/')) return standing;
  if (stat(address.c_str(), &node) != 0) {
    standing.state = errno == EACCES ? State::NoPermission : State::NotPresent;
    return standing;
  }
  if (!S_ISCHR(node.st_mode)) return standing;
  std::error_code failed;
  if (const auto path = std::filesystem::canonical(address, failed); !failed) standing.device = path;
  standing.state = StateOf(node);
  if (standing.state != State::Present) return standing;
  if (faccessat(AT_FDCWD, address.c_str(), R_OK | W_OK, AT_EACCESS) != 0) {
    standing.state = State::NoPermission;
    standing.group = GroupName(node.st_gid);
    standing.groupMayUse = (node.st_mode & 060) == 060;
  }
  return standing;
}

/// Looks through the descriptors of one process. The text of a link is read before what it leads to is asked for:
/// that could be a file on a server that does not answer.
void FindAmongDescriptors(int pid, const std::vector<Sought>& devices) {
  const Folder folder(opendir(("/proc/" + std::to_string(pid) + "/fd").c_str()));
  if (!folder) return;
  const int at = dirfd(folder.get());
  while (const dirent* entry = readdir(folder.get())) {
    char path[256];
    const ssize_t size = readlinkat(at, entry->d_name, path, sizeof path);
    const std::string_view link(path, static_cast<std::size_t>(std::max<ssize_t>(0, size)));
    const bool candidate = link.starts_with("/dev/") || std::any_of(devices.begin(), devices.end(), [&](const auto& d) {
                             return d.standing->device == link;
                           });
    struct stat open {};
    if (!candidate || fstatat(at, entry->d_name, &open, 0) != 0) continue;
    for (const Sought& device : devices) {
      if (device.Is(open)) device.HeldBy(pid);
    }
  }
}

void FindDescriptors(const std::vector<Sought>& devices) {
  const Folder processes(opendir("/proc"));
  if (!processes) return;
  while (const dirent* entry = readdir(processes.get())) {
    if (const int pid = ProcessNumber(entry->d_name); pid > 0) FindAmongDescriptors(pid, devices);
  }
}

/// Process that holds a lock on `node`, by the system's list of `locks`; 0 if there is none.
int LockHolderIn(const std::string& locks, const struct stat& node) {
  char wanted[64];
  std::snprintf(wanted, sizeof wanted, "%02x:%02x:%llu", major(node.st_dev), minor(node.st_dev),
                static_cast<unsigned long long>(node.st_ino));
  std::istringstream lines(locks);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream fields(line);
    std::string number, kind, strictness, access, file;
    int pid = 0;
    if (fields >> number >> kind && kind != "->" && fields >> strictness >> access >> pid >> file && file == wanted &&
        pid > 0) {
      return pid;
    }
  }
  return 0;
}

/// Process whose lock file stands for the device, as terminal programs write it; 0 if there is none that still runs.
int LockFileHolder(const std::string& device) {
  const int pid = ProcessNumber(ReadNow("/var/lock/LCK.." + device.substr(device.rfind('/') + 1)));
  return pid > 0 && (kill(pid, 0) == 0 || errno == EPERM) ? pid : 0;
}

}  // namespace

std::vector<PortStanding> PosixPortProbe::LookAtAll(std::span<const std::string> addresses) const {
  std::vector<PortStanding> standings;
  standings.reserve(addresses.size());
  std::vector<Sought> devices;
  for (const std::string& address : addresses) {
    struct stat node {};
    standings.push_back(Look(address, node));
    if (standings.back().state == State::Present) devices.push_back({node, &standings.back()});
  }
  if (devices.empty()) return standings;
  FindDescriptors(devices);
  const std::string locks = ReadNow("/proc/locks");
  for (const Sought& device : devices) {
    if (device.standing->state == State::InUse && !device.standing->ours) continue;
    int pid = LockHolderIn(locks, device.node);
    if (pid == 0) pid = LockFileHolder(device.standing->device);
    if (pid != 0) device.HeldBy(pid);
  }
  return standings;
}

bool PosixPortProbe::CanSet(std::string_view settings) const { return ParseLineSettings(settings).has_value(); }

int LockHolder(const std::string& path) {
  struct stat node {};
  return stat(path.c_str(), &node) == 0 ? LockHolderIn(ReadNow("/proc/locks"), node) : 0;
}
