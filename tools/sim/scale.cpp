#include "tools/sim/scale.h"

#include <cmath>

namespace sim {

namespace {

constexpr double kSample = 0.01;             ///< seconds between two samples of the load cell
constexpr std::int64_t kSamplesOfNoise = 5;  ///< how long one disturbance lasts
constexpr std::int64_t kSamplesToRest = 40;  ///< at rest after this time within the band
constexpr double kMotionBand = 0.5;          ///< increments
constexpr double kZeroRange = 0.04;          ///< part of the capacity that can be zeroed away
constexpr int kIncrementsOverCapacity = 9;   ///< shown beyond the capacity before the display gives up
constexpr double kTie = 1e-6;                ///< increments; a tie in decimals is rarely one in binary

}  // namespace

Scale::Scale(const ScaleSettings& settings, std::uint32_t seed)
    : settings_(settings),
      increment_(settings.countBy * std::pow(10.0, -settings.decimals)),
      profile_(settings.load),
      swing_(settings.overshoot, settings.settle, kSample),
      random_(seed),
      lastMotion_(-kSamplesToRest),
      zero_(-settings.zeroError),
      tare_(Counts(settings.tare)) {
  swing_.RestAt(profile_.At(settings_.phase));
  restsAt_ = Seen();
}

std::int64_t Scale::Counts(double weight) const {
  const double increments = weight / increment_;
  return std::llround(increments + std::copysign(kTie, increments)) * settings_.countBy;
}

void Scale::AdvanceTo(double seconds) {
  while (static_cast<double>(samples_ + 1) * kSample <= seconds) Sample();
}

void Scale::Sample() {
  ++samples_;
  swing_.Step(byHand_ ? *byHand_ : profile_.At(static_cast<double>(samples_) * kSample + settings_.phase));
  if (settings_.noise > 0 && samples_ % kSamplesOfNoise == 0) {
    noise_ = std::normal_distribution<double>(0, settings_.noise)(random_);
  }
  WatchMotion();
}

void Scale::WatchMotion() {
  if (std::fabs(Seen() - restsAt_) <= kMotionBand * increment_) return;
  restsAt_ = Seen();
  lastMotion_ = samples_;
}

Reading Scale::Read() const {
  const std::int64_t gross = Counts(Seen() - zero_);
  const std::int64_t most = Counts(settings_.capacity) + std::int64_t{kIncrementsOverCapacity} * settings_.countBy;
  Reading reading;
  reading.indicated = gross - tare_;
  reading.tare = tare_;
  reading.decimals = settings_.decimals;
  reading.countBy = settings_.countBy;
  reading.net = tare_ != 0;
  reading.outOfRange = gross > most || gross < -most;
  reading.motion = samples_ - lastMotion_ < kSamplesToRest;
  reading.kilograms = settings_.kilograms;
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
  const double sincePowerUp = Seen() + settings_.zeroError;
  if (now.motion || now.net || std::fabs(sincePowerUp) > settings_.capacity * kZeroRange) return false;
  zero_ = Seen();
  return true;
}

bool Scale::PresetTare(double tare) {
  if (!(tare >= 0 && tare <= settings_.capacity)) return false;
  tare_ = Counts(tare);
  return true;
}

}  // namespace sim
