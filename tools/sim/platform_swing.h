#pragma once

namespace sim {

/// How a platform moves under its load: it swings beyond a new weight and comes to rest.
class PlatformSwing {
 public:
  /// `overshoot`: how far the first swing goes beyond a load that is set down, as a part of the change, 0 to below 1.
  /// `settle`: seconds until a thousandth of the change is left. `step`: seconds that each `Step` lets pass.
  PlatformSwing(double overshoot, double settle, double step);

  /// The platform rests under this load.
  void RestAt(double load);
  /// Lets one step pass under this load.
  void Step(double load);
  double Position() const { return position_; }

 private:
  // Over one step the distance from the load and the speed change by the exact solution of a damped spring, which
  // stays true for swings as short as the step itself.
  double distanceByDistance_;
  double distanceBySpeed_;
  double speedByDistance_;
  double speedBySpeed_;
  double position_ = 0;
  double speed_ = 0;
};

}  // namespace sim
