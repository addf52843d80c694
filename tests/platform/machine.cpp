#include "tests/platform/machine.h"

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <utility>

#include "platform/run_time_error.h"

bool Eventually(const std::function<bool()>& condition) {
  const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(5);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > limit) return false;
    poll(nullptr, 0, 1);
  }
  return true;
}

std::size_t OpenDescriptors() {
  std::size_t count = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) ++count;
  return count;
}

TemporaryFolder::TemporaryFolder() {
  std::string name = std::filesystem::temp_directory_path() / "tarvex-test-XXXXXX";
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder for the test");
  path_ = name;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

OtherProcess::OtherProcess(const std::function<int()>& work) : pid_(fork()) {
  if (pid_ == 0) _exit(work());
}

int OtherProcess::ExitStatus() {
  int status = -1;
  waitpid(std::exchange(pid_, -1), &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void OtherProcess::Kill() {
  if (pid_ <= 0) return;
  kill(pid_, SIGKILL);
  ExitStatus();
}

int FaultNumber(const std::function<void()>& step) {
  try {
    step();
    return 0;
  } catch (const RunTimeError& fault) {
    return fault.Number();
  }
}
