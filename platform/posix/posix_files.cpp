#include "platform/posix/posix_files.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <optional>

#include "platform/posix/descriptor.h"
#include "platform/posix/file_fault.h"
#include "platform/run_time_error.h"

namespace {

constexpr off_t kLargestFile = 64'000'000;  // bytes
constexpr mode_t kNewFileMode = 0666;       // less what the user's mask takes away
constexpr int kMostLinks = 40;

/// errno of the first write that fails, 0 if all of `data` was written; `written` counts the bytes either way.
int WriteAll(int file, std::string_view data, std::size_t& written) {
  for (written = 0; written < data.size();) {
    const ssize_t count = write(file, data.data() + written, data.size() - written);
    if (count >= 0) {
      written += static_cast<std::size_t>(count);
    } else if (errno != EINTR) {
      return errno;
    }
  }
  return 0;
}

/// What is at `path`, nothing if there is no such file. Raises if it is anything but a file.
std::optional<struct stat> Inspect(const std::string& path, const char* action) {
  struct stat found {};
  if (stat(path.c_str(), &found) != 0) {
    if (errno == ENOENT) return std::nullopt;
    RaiseFileFault(path, action, errno);
  }
  if (S_ISDIR(found.st_mode)) RaiseFileFault(path, action, EISDIR);
  if (!S_ISREG(found.st_mode)) RaiseFileFault(path, action, ENXIO);
  return found;
}

/// The file that `path` leads to through links, also if it does not exist yet.
std::string BehindLinks(const std::string& path, const char* action) {
  std::filesystem::path file = path;
  std::error_code error;
  for (int link = 0; std::filesystem::is_symlink(std::filesystem::symlink_status(file, error)); ++link) {
    if (link == kMostLinks) RaiseFileFault(path, action, ELOOP);
    file = file.parent_path() / std::filesystem::read_symlink(file, error);
    if (error) RaiseFileFault(path, action, error.value());
  }
  return file.string();
}

/// The new content on its way to its place. The name is the same each time, so that what a power cut leaves is
/// overwritten by the next attempt.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::filesystem::path& target)
      : path_(target.parent_path() / ("." + target.filename().string() + ".new")) {
    unlink(path_.c_str());
    file_ = Descriptor(open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kNewFileMode));
    if (!file_) creationError_ = errno;
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (file_) unlink(path_.c_str());
  }

  /// Fills the file and makes sure it is on the disk; errno or 0.
  int Fill(std::string_view content, const std::optional<struct stat>& model) {
    if (!file_) return creationError_;
    std::size_t written = 0;
    if (const int error = WriteAll(file_.Get(), content, written)) return error;
    if (model) {
      if (fchown(file_.Get(), model->st_uid, model->st_gid) != 0 && errno != EPERM) return errno;
      if (fchmod(file_.Get(), model->st_mode & 07777) != 0 && errno != EPERM) return errno;
    }
    return fsync(file_.Get()) == 0 ? 0 : errno;
  }
  /// Puts the file in place of `target`; errno or 0.
  int TakePlaceOf(const std::string& target) {
    if (rename(path_.c_str(), target.c_str()) != 0) return errno;
    file_.Close();
    return 0;
  }

 private:
  std::string path_;
  Descriptor file_;
  int creationError_ = 0;
};

/// After this the new name outlives a power cut too. Not every file system can do it, and the content is whole in
/// any case.
void FlushFolder(const std::filesystem::path& folder) {
  const Descriptor handle(open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (handle) fsync(handle.Get());
}

}  // namespace

std::string PosixFiles::OpenAndRead(const std::string& path) {
  if (Inspect(path, "read")) return Read(path);
  const Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, kNewFileMode));
  if (!file) RaiseFileFault(path, "created", errno);
  return {};
}

std::string PosixFiles::Read(const std::string& path) {
  const auto found = Inspect(path, "read");
  if (!found) return {};
  if (found->st_size > kLargestFile) {
    throw RunTimeError(ErrorNumber::DeviceIo, path + " cannot be read: it is far too large.");
  }
  const Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (!file) RaiseFileFault(path, "read", errno);
  std::string content(static_cast<std::size_t>(found->st_size), '\0');
  std::size_t size = 0;
  while (size < content.size()) {
    const ssize_t count = read(file.Get(), content.data() + size, content.size() - size);
    if (count == 0) break;
    if (count > 0) {
      size += static_cast<std::size_t>(count);
    } else if (errno != EINTR) {
      RaiseFileFault(path, "read", errno);
    }
  }
  content.resize(size);
  return content;
}

bool PosixFiles::Exists(const std::string& path) { return Inspect(path, "read").has_value(); }

void PosixFiles::Replace(const std::string& path, std::string_view content) {
  constexpr const char* kAction = "written";
  const std::string target = BehindLinks(path, kAction);
  const auto old = Inspect(target, kAction);
  if (old && faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) RaiseFileFault(path, kAction, errno);
  TemporaryFile replacement(target);
  int error = replacement.Fill(content, old);
  if (error == 0) error = replacement.TakePlaceOf(target);
  if (error != 0) RaiseFileFault(path, kAction, error);
  FlushFolder(std::filesystem::path(target).parent_path());
}

void PosixFiles::Append(const std::string& path, std::string_view line) {
  constexpr int kFlags = O_WRONLY | O_APPEND | O_CREAT | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  const Descriptor file(open(path.c_str(), kFlags, kNewFileMode));
  if (!file) RaiseFileFault(path, "written", errno);
  std::size_t written = 0;
  const int error = WriteAll(file.Get(), line, written);
  if (error == 0) return;
  struct stat now {};
  if (written > 0 && fstat(file.Get(), &now) == 0 && S_ISREG(now.st_mode)) {
    // If even this fails, half a line stays: the fault is raised all the same.
    [[maybe_unused]] const int kept = ftruncate(file.Get(), now.st_size - static_cast<off_t>(written));
  }
  RaiseFileFault(path, "written", error);
}
