#pragma once

#include <vector>

namespace sim {

/// One load on the platform: what lies there and for how long. Weight in the scale's units, times in seconds.
struct LoadStep {
  double weight;
  double seconds;
  double over = 0;  ///< time in which it comes on, as product runs into a hopper; 0 sets it down at once
};

/// The loads of a platform, repeated for ever.
class LoadProfile {
 public:
  /// Without steps the platform stays empty.
  explicit LoadProfile(std::vector<LoadStep> steps);
  /// Weight that lies on the platform `seconds` after the first step began.
  double At(double seconds) const;

 private:
  std::vector<LoadStep> steps_;
  double period_ = 0;
};

}  // namespace sim
