#pragma once

#include <sys/resource.h>
#include <sys/types.h>

#include <csignal>
#include <functional>
#include <string>
#include <string_view>

/// Waits until `condition` holds, 5 seconds at most; false if it never did.
bool Eventually(const std::function<bool()>& condition);

/// Descriptors this process holds open.
std::size_t OpenDescriptors();

/// A folder of the test's own, removed with all it holds.
class TemporaryFolder {
 public:
  TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();
  std::string operator/(std::string_view name) const { return path_ + "/" + std::string(name); }
  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

/// Runs `work` in a second process, which ends with what it returns.
class OtherProcess {
 public:
  explicit OtherProcess(const std::function<int()>& work);
  OtherProcess(const OtherProcess&) = delete;
  OtherProcess& operator=(const OtherProcess&) = delete;
  ~OtherProcess() { Kill(); }
  /// Waits for the end; -1 if the process was killed.
  int ExitStatus();
  void Kill();

 private:
  pid_t pid_;
};

/// Error number that `step` raises, 0 for none.
int FaultNumber(const std::function<void()>& step);

/// As long as it lives, no file of this process grows beyond `bytes`: the disk is full.
class FullDisk {
 public:
  explicit FullDisk(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;
  ~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, SIG_DFL);
  }

 private:
  rlimit before_{};
};
