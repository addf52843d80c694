#include "app/run_summary.h"

#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>

#include "core/tables.h"
#include "diagnostics/row_tone.h"

namespace {

double Seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

/// Processor time of this process so far.
double SecondsUsed() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
}

double ResidentMegabytes() {
  long total = 0;
  long resident = 0;
  std::ifstream("/proc/self/statm") >> total >> resident;
  return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
}

}  // namespace

RunSummary::RunSummary() : start_(std::chrono::steady_clock::now()), secondsUsed_(SecondsUsed()) {}

std::string RunSummary::Text(const Tables& tables) const {
  const std::chrono::duration<double> lasted = std::chrono::steady_clock::now() - start_;
  const ChannelCount count = CountChannels(tables);
  const double used = 100.0 * (SecondsUsed() - secondsUsed_) / lasted.count();
  char text[200];
  std::snprintf(text, sizeof text,
                "%d of %d channels online, %lld streams decoded, %.1f %% of a core used, %.1f MB resident, %.1f s",
                count.online, count.enabled, static_cast<long long>(tables.StreamsDecoded), used, ResidentMegabytes(),
                lasted.count());
  return text;
}
