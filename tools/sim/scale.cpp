#include "tools/sim/scale.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kStep = 0.004;         ///< seconds of one integration step
constexpr double kZeroRange = 0.04;     ///< part of the capacity that can be zeroed away
constexpr int kCountsOverCapacity = 9;  ///< a display goes blank nine increments above its capacity
constexpr double kDefaultDamping = 0.5;

/// Damping of a swing whose first overshoot is this part of the change.
double DampingOf(double overshoot) {
  if (overshoot <= 0) return 1;
  if (overshoot >= 1) return kDefaultDamping;
  const double logarithm = std::log(overshoot);
  return -logarithm / std::sqrt(M_PI * M_PI + logarithm * logarithm);
}

}  // namespace

Scale::Scale(const ScaleSettings& settings, std::uint32_t seed)
    : settings_(settings),
      lastPlace_(std::pow(10.0, -settings.decimals)),
      damping_(DampingOf(settings.overshoot)),
      random_(seed),
      zero_(-settings.zeroError) {
  frequency_ = 4 / (damping_ * std::max(0.05, settings.settle));
  if (!settings_.load.empty()) stepEnds_ = settings_.load.front().seconds;
  position_ = load_ = TargetLoad();
  if (settings.tare > 0) tare_ = Counts(settings.tare);
}

std::int64_t Scale::Counts(double weight) const {
  const double increment = lastPlace_ * settings_.countBy;
  return std::llround(weight / increment) * settings_.countBy;
}

double Scale::TargetLoad() {
  if (byHand_ || settings_.load.empty()) return load_;
  while (time_ >= stepEnds_) {
    step_ = (step_ + 1) % settings_.load.size();
    stepEnds_ += std::max(0.1, settings_.load[step_].seconds);
  }
  return settings_.load[step_].weight;
}

/// The platform is a damped spring: a new load makes it swing beyond the weight and come to rest.
void Scale::Move(double seconds) {
  const double acceleration = frequency_ * frequency_ * (load_ - position_) - 2 * damping_ * frequency_ * speed_;
  speed_ += acceleration * seconds;
  position_ += speed_ * seconds;
}

void Scale::Advance(double seconds) {
  while (seconds > 0) {
    const double step = std::min(seconds, kStep);
    time_ += step;
    load_ = TargetLoad();
    Move(step);
    seconds -= step;
  }
  shownNoise_ = settings_.noise > 0 ? std::normal_distribution<double>(0, settings_.noise)(random_) : 0;
}

void Scale::PutOn(double weight) {
  byHand_ = true;
  load_ = weight;
}

Reading Scale::Read() const {
  Reading reading;
  const double increment = lastPlace_ * settings_.countBy;
  reading.motion = std::fabs(speed_) > 2 * increment || std::fabs(load_ - position_) > 2 * increment;
  const std::int64_t gross = Counts(Gross() + (reading.motion ? shownNoise_ : 0));
  reading.decimals = settings_.decimals;
  reading.countBy = settings_.countBy;
  reading.kilograms = settings_.kilograms;
  reading.net = tare_ != 0;
  reading.tare = tare_;
  reading.indicated = gross - tare_;
  const std::int64_t most = Counts(settings_.capacity) + kCountsOverCapacity * settings_.countBy;
  reading.outOfRange = gross > most || gross < -most;
  return reading;
}

bool Scale::Tare() {
  const Reading now = Read();
  const std::int64_t gross = now.indicated + now.tare;
  if (now.motion || now.outOfRange || gross <= 0) return false;
  tare_ = gross;
  return true;
}

bool Scale::Zero() {
  const Reading now = Read();
  if (now.motion || now.net || std::fabs(position_ + settings_.zeroError) > settings_.capacity * kZeroRange)
    return false;
  zero_ = position_;
  return true;
}

void Scale::ClearTare() { tare_ = 0; }

bool Scale::PresetTare(double tare) {
  if (!(tare >= 0) || tare > settings_.capacity) return false;
  tare_ = Counts(tare);
  return true;
}
