#include "tools/sim/load_profile.h"

#include <algorithm>
#include <cmath>

namespace sim {

LoadProfile::LoadProfile(std::vector<LoadStep> steps) : steps_(std::move(steps)) {
  for (const LoadStep& step : steps_) period_ += step.seconds;
}

double LoadProfile::At(double seconds) const {
  if (!(period_ > 0)) return 0;
  double since = std::fmod(seconds, period_);
  double before = steps_.back().weight;
  for (const LoadStep& step : steps_) {
    if (since < step.seconds) {
      const double part = step.over > 0 ? std::min(1.0, since / step.over) : 1;
      return before + (step.weight - before) * part;
    }
    since -= step.seconds;
    before = step.weight;
  }
  return before;
}

}  // namespace sim
