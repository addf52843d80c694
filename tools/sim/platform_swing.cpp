#include "tools/sim/platform_swing.h"

#include <cmath>
#include <numbers>

namespace sim {

namespace {

constexpr double kRest = 7;  ///< e to this power is about a thousand

}  // namespace

PlatformSwing::PlatformSwing(double overshoot, double settle, double step) {
  const double decay = kRest / settle;
  const double swing = overshoot > 0 ? decay * std::numbers::pi / -std::log(overshoot) : 0;
  const double left = std::exp(-decay * step);
  const double cosine = std::cos(swing * step);
  const double sine = swing > 0 ? std::sin(swing * step) / swing : step;
  distanceByDistance_ = left * (cosine + decay * sine);
  distanceBySpeed_ = left * sine;
  speedByDistance_ = -left * (decay * decay + swing * swing) * sine;
  speedBySpeed_ = left * (cosine - decay * sine);
}

void PlatformSwing::RestAt(double load) {
  position_ = load;
  speed_ = 0;
}

void PlatformSwing::Step(double load) {
  const double distance = position_ - load;
  position_ = load + distanceByDistance_ * distance + distanceBySpeed_ * speed_;
  speed_ = speedByDistance_ * distance + speedBySpeed_ * speed_;
}

}  // namespace sim
