#include "tools/sim/fault.h"

#include <algorithm>
#include <cmath>

namespace sim {

namespace {

constexpr std::array<std::string_view, kFaults> kNames = {"silence", "garbage", "cut", "split", "unplug"};

}  // namespace

std::optional<Fault> FaultOf(std::string_view name) {
  const auto found = std::find(kNames.begin(), kNames.end(), name);
  if (found == kNames.end()) return std::nullopt;
  return static_cast<Fault>(found - kNames.begin());
}

void FaultPlan::Repeat(Fault fault, double period, double seconds) {
  Plan& plan = plans_[static_cast<std::size_t>(fault)];
  plan.period = period;
  plan.seconds = seconds;
}

void FaultPlan::Start(Fault fault, double now, double seconds) {
  plans_[static_cast<std::size_t>(fault)].until = now + seconds;
}

bool FaultPlan::On(Fault fault, double now) const {
  const Plan& plan = plans_[static_cast<std::size_t>(fault)];
  if (now < plan.until) return true;
  return plan.period > 0 && std::fmod(now, plan.period) >= plan.period - plan.seconds;
}

}  // namespace sim
