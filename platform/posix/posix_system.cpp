#include "platform/posix/posix_system.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <ctime>
#include <utility>

#include "platform/posix/file_fault.h"

namespace {

/// The folder itself is locked: that works on a full or read-only disk too and leaves no file behind.
Descriptor OpenFolder(const std::string& path) {
  Descriptor folder(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!folder) RaiseFileFault(path, "used as the program's folder", errno);
  return folder;
}

bool IsLockedByOther(const Descriptor& folder, int operation) {
  return flock(folder.Get(), operation | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

}  // namespace

PosixSystem::PosixSystem(std::string programFolder, DisplaySize display)
    : programFolder_(std::move(programFolder)), display_(display) {}

int PosixSystem::GetSystemMetrics(int index) const {
  if (index == 0) return display_.width;
  if (index == 1) return display_.height;
  return 0;
}

bool PosixSystem::PreviousInstance() {
  if (lock_) return false;
  constexpr int kLooks = 5;  // the lock may be that of a look, which is over in no time
  Descriptor folder = OpenFolder(programFolder_);
  for (int look = 1; IsLockedByOther(folder, LOCK_EX); ++look) {
    if (look == kLooks) return true;
    Sleep(10);
  }
  lock_ = std::move(folder);
  return false;
}

bool PosixSystem::CopyRunsIn(const std::string& folder) { return IsLockedByOther(OpenFolder(folder), LOCK_SH); }

std::int64_t PosixSystem::WallSeconds() const {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  return now.tv_sec;
}

double PosixSystem::SecondsSinceMidnight() const {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  std::tm local{};
  localtime_r(&now.tv_sec, &local);
  return local.tm_hour * 3600 + local.tm_min * 60 + local.tm_sec + static_cast<double>(now.tv_nsec) / 1e9;
}

std::string PosixSystem::DateTimeText() const {
  const std::int64_t second = WallSeconds();
  if (second == textSecond_) return text_;
  tzset();
  const std::time_t time = second;
  std::tm local{};
  localtime_r(&time, &local);
  char text[64];
  text_.assign(text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local));
  textSecond_ = second;
  return text_;
}

void PosixSystem::Sleep(int milliseconds) {
  if (milliseconds <= 0) return;
  timespec until{};
  clock_gettime(CLOCK_MONOTONIC, &until);
  until.tv_sec += milliseconds / 1000;
  until.tv_nsec += milliseconds % 1000 * 1'000'000L;
  if (until.tv_nsec >= 1'000'000'000) {
    ++until.tv_sec;
    until.tv_nsec -= 1'000'000'000;
  }
  while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &until, nullptr) == EINTR) {
  }
}
