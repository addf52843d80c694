#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

/// One load on the platform: what lies there, and for how long. Weight in the scale's units, time in seconds.
struct LoadStep {
  double weight;
  double seconds;
};

/// A scale as its owner ordered it. Weights in its own units.
struct ScaleSettings {
  bool kilograms = false;
  double capacity = 1000;
  int decimals = 1;            ///< places behind the point, 0 to 5; -1 and -2 count in tens and hundreds
  int countBy = 1;             ///< increment, in units of the last place: 1, 2 or 5
  double overshoot = 0.15;     ///< how far a new load swings beyond its weight, as a part of the change
  double settle = 1.5;         ///< seconds until a change has come to rest
  double noise = 0;            ///< standard deviation of the reading while a load moves
  double tare = 0;             ///< tare at power-up; net mode if it is not 0
  double zeroError = 0;        ///< weight shown by an empty platform at power-up
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
/// caller; the same seed gives the same weights.
class Scale {
 public:
  Scale(const ScaleSettings& settings, std::uint32_t seed);

  /// Lets `seconds` pass.
  void Advance(double seconds);
  /// Puts a load on by hand; the load profile is left from then on.
  void PutOn(double weight);
  Reading Read() const;

  /// Takes the present weight as tare. Refused in motion, out of range and for a weight that is not above zero.
  bool Tare();
  /// Takes the present gross weight as zero. Refused in motion, in net mode and beyond 4 % of the capacity.
  bool Zero();
  void ClearTare();
  /// A tare known beforehand, rounded to the increment; 0 clears it. Refused below 0 and beyond the capacity.
  bool PresetTare(double tare);

 private:
  std::int64_t Counts(double weight) const;
  double Gross() const { return position_ - zero_; }
  double TargetLoad();
  void Move(double seconds);

  ScaleSettings settings_;
  double lastPlace_;
  double frequency_;  ///< of the platform's swing, in radians a second
  double damping_;
  std::mt19937 random_;
  double time_ = 0;
  std::size_t step_ = 0;
  double stepEnds_ = 0;
  bool byHand_ = false;
  double load_ = 0;
  double position_ = 0;  ///< what the load cell sees
  double speed_ = 0;
  double shownNoise_ = 0;
  double zero_ = 0;
  std::int64_t tare_ = 0;
};
