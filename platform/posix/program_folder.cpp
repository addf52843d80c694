#include "platform/posix/program_folder.h"

#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include "platform/posix/file_fault.h"

namespace fs = std::filesystem;

namespace {

std::string Setting(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string{} : value;
}

fs::path UserFolder() {
  if (const std::string home = Setting("HOME"); !home.empty()) return home;
  const passwd* user = getpwuid(getuid());
  return user == nullptr ? "/" : user->pw_dir;
}

fs::path ChosenFolder() {
  if (const std::string own = Setting("TARVEX_HOME"); !own.empty()) return own;
  const fs::path data = Setting("XDG_DATA_HOME");
  return (data.is_absolute() ? data : UserFolder() / ".local/share") / "tarvex";
}

/// A folder in the making, removed again unless it comes to its place.
class FolderInTheMaking {
 public:
  explicit FolderInTheMaking(fs::path path) : path_(std::move(path)) {}
  FolderInTheMaking(const FolderInTheMaking&) = delete;
  FolderInTheMaking& operator=(const FolderInTheMaking&) = delete;
  ~FolderInTheMaking() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  const fs::path& Path() const { return path_; }

 private:
  fs::path path_;
};

constexpr const char* kFilling = "filled with the shipped formats";

/// A fault is told of the folder that `to` is going to be, unless it is the shipped file that cannot be read.
void CopyFormats(const fs::path& from, const fs::path& to, const std::string& folder) {
  for (const fs::directory_entry& entry : fs::directory_iterator(from)) {
    if (entry.path().extension() != ".Cfg") continue;
    const fs::path copy = to / entry.path().filename();
    std::error_code error;
    fs::copy_file(entry.path(), copy, error);
    if (error && access(entry.path().c_str(), R_OK) != 0) RaiseFileFault(entry.path().string(), "read", error.value());
    // an installed file may be read-only
    if (!error) fs::permissions(copy, fs::perms::owner_write, fs::perm_options::add, error);
    if (error) RaiseFileFault(folder, kFilling, error.value());
  }
}

}  // namespace

std::string ProgramFolder() {
  std::string folder = fs::absolute(ChosenFolder()).lexically_normal().string();
  while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
  return folder;
}

void PrepareProgramFolder(const std::string& folder, const std::string& shippedFormatsFolder) {
  try {
    if (fs::is_directory(folder)) return;
    if (fs::exists(fs::symlink_status(folder))) RaiseFileFault(folder, "used as the program's folder", ENOTDIR);
    fs::create_directories(fs::path(folder).parent_path());
    const FolderInTheMaking making(folder + ".new-" + std::to_string(getpid()));
    std::error_code error;
    fs::create_directory(making.Path(), error);
    if (error) RaiseFileFault(folder, "created", error.value());
    CopyFormats(shippedFormatsFolder, making.Path(), folder);
    fs::rename(making.Path(), folder, error);
    if (error) RaiseFileFault(folder, "created", error.value());
  } catch (const fs::filesystem_error& fault) {
    RaiseFileFault(fault.path1().string(), "used to set up the program's folder", fault.code().value());
  }
}
