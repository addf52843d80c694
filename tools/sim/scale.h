#pragma once

#include <cstdint>
#include <optional>
#include <random>
#include <vector>

#include "tools/sim/load_profile.h"
#include "tools/sim/platform_swing.h"

namespace sim {

/// A scale as its owner ordered it. Weights in its own units, times in seconds.
struct ScaleSettings {
  bool kilograms = false;
  double capacity = 1000;
  int decimals = 1;            ///< places behind the point, 0 to 5; -1 and -2 count in tens and hundreds
  int countBy = 1;             ///< increment, in units of the last place: 1, 2 or 5
  double overshoot = 0.15;     ///< how far a new load swings beyond its weight, as a part of the change
  double settle = 1.5;         ///< until a change has come to rest
  double noise = 0;            ///< standard deviation of the reading
  double tare = 0;             ///< tare at power-up; net mode if it is not 0
  double zeroError = 0;        ///< weight shown by an empty platform at power-up
  double phase = 0;            ///< how far the loads have come at power-up
  std::vector<LoadStep> load;  ///< repeated for ever; empty for a platform that stays empty
};

/// What the display shows, in units of the last place.
struct Reading {
  std::int64_t indicated = 0;  ///< gross, or net in net mode
  std::int64_t tare = 0;
  int decimals = 0;
  int countBy = 1;
  bool net = false;
  bool outOfRange = false;
  bool motion = false;
  bool kilograms = false;
};

/// A scale without its line: load, platform, display and the keys that a command presses. Time is driven by the
/// caller; the same settings and seed give the same weights at the same times.
class Scale {
 public:
  Scale(const ScaleSettings& settings, std::uint32_t seed);

  /// Lets time pass until `seconds` after power-up; a time that has passed already does nothing.
  void AdvanceTo(double seconds);
  Reading Read() const;

  /// Puts a load on by hand and leaves it there, whatever the load profile says.
  void PutOn(double weight) { byHand_ = weight; }
  /// Goes back to the load profile.
  void LetGo() { byHand_.reset(); }

  /// Takes the present gross weight as tare. Refused in motion, out of range and for a weight that is not above zero.
  bool Tare();
  /// Takes the present gross weight as zero. Refused in motion, in net mode and for more than 4 % of the capacity
  /// away from the zero at power-up.
  bool Zero();
  void ClearTare() { tare_ = 0; }
  /// A tare known beforehand, rounded to the increment; 0 clears it. Refused below 0 and beyond the capacity.
  bool PresetTare(double tare);

 private:
  void Sample();
  void WatchMotion();
  /// Whole increments nearest to `weight`, ties away from zero, in units of the last place.
  std::int64_t Counts(double weight) const;
  double Seen() const { return swing_.Position() + noise_; }

  ScaleSettings settings_;
  double increment_;
  LoadProfile profile_;
  PlatformSwing swing_;
  std::mt19937 random_;
  std::int64_t samples_ = 0;  ///< taken since power-up
  std::optional<double> byHand_;
  double noise_ = 0;
  double restsAt_ = 0;       ///< weight around which the platform is held to rest
  std::int64_t lastMotion_;  ///< sample in which it last left that weight
  double zero_;              ///< weight that is shown as zero
  std::int64_t tare_ = 0;
};

}  // namespace sim
