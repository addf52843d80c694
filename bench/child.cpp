#include "bench/child.h"

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <ctime>
#include <fstream>
#include <string>

namespace {

constexpr std::int64_t kSecond = 1'000'000'000;

std::int64_t Nanoseconds(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return time.tv_sec * kSecond + time.tv_nsec;
}

}  // namespace

std::int64_t Now() { return Nanoseconds(CLOCK_MONOTONIC); }

double Percent(std::int64_t part, std::int64_t whole) {
  return 100.0 * static_cast<double>(part) / static_cast<double>(whole);
}

Child::Child(const std::function<void()>& work) : pid_(fork()) {
  if (pid_ != 0) return;
  work();
  _exit(1);
}

Child::~Child() {
  kill(pid_, SIGTERM);
  waitpid(pid_, nullptr, 0);
}

std::int64_t Child::CpuTime() const {
  clockid_t clock{};
  return clock_getcpuclockid(pid_, &clock) == 0 ? Nanoseconds(clock) : 0;
}

long Child::ResidentSize() const { return ResidentSizeOf(std::to_string(pid_).c_str()); }

long ResidentSizeOf(const char* process) {
  std::ifstream status(std::string("/proc/") + process + "/status");
  for (std::string word; status >> word;) {
    long kilobytes = 0;
    if (word == "VmRSS:" && status >> kilobytes) return kilobytes;
  }
  return 0;
}
