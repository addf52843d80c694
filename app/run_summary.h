#pragma once

#include <chrono>
#include <string>

struct Tables;

/// What a run has cost and done, for the line printed at its end.
class RunSummary {
 public:
  RunSummary();

  /// "12 of 12 channels online, 2400 streams decoded, 1.3 % of a core used, 14.2 MB resident, 10.0 s". To be taken
  /// while the channels are still open.
  std::string Text(const Tables& tables) const;

 private:
  std::chrono::steady_clock::time_point start_;
  double secondsUsed_;
};
