#include "tools/sim/fault.h"

#include <cmath>

namespace {

constexpr std::array<std::string_view, kFaults> kNames = {"silence", "garbage", "cut", "split", "unplug"};

}  // namespace

std::optional<Fault> FaultOf(std::string_view name) {
  for (std::size_t index = 0; index < kFaults; ++index) {
    if (kNames[index] == name) return static_cast<Fault>(index);
  }
  return std::nullopt;
}

std::string_view NameOf(Fault fault) { return kNames[static_cast<std::size_t>(fault)]; }

void FaultPlan::Repeat(Fault fault, double period, double seconds) {
  Plan& plan = plans_[static_cast<std::size_t>(fault)];
  plan.period = period;
  plan.seconds = seconds;
}

void FaultPlan::Start(Fault fault, double now, double seconds) {
  Plan& plan = plans_[static_cast<std::size_t>(fault)];
  plan.until = now + seconds;
  plan.stopped = false;
}

void FaultPlan::Stop(Fault fault) {
  Plan& plan = plans_[static_cast<std::size_t>(fault)];
  plan.until = 0;
  plan.stopped = true;
}

bool FaultPlan::On(Fault fault, double now) const {
  const Plan& plan = plans_[static_cast<std::size_t>(fault)];
  if (now < plan.until) return true;
  if (plan.stopped || plan.period <= 0) return false;
  return std::fmod(now, plan.period) >= plan.period - plan.seconds;
}
