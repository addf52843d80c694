#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace sim {

/// What can go wrong with a device and its line.
enum class Fault {
  Silence,  ///< neither sends nor listens, as with its power off
  Garbage,  ///< random bytes in front of each frame
  Cut,      ///< frames that end too early
  Split,    ///< frames in small pieces with pauses
  Unplug,   ///< the line is gone
};
inline constexpr std::size_t kFaults = 5;

/// None if no fault has this name.
std::optional<Fault> FaultOf(std::string_view name);

/// When each fault is on: by a schedule that repeats, or by hand. Times in seconds.
class FaultPlan {
 public:
  /// On for the last `seconds` of every `period`.
  void Repeat(Fault fault, double period, double seconds);
  /// On from `now` for `seconds`.
  void Start(Fault fault, double now, double seconds);
  /// Off, the schedule too.
  void Stop(Fault fault) { plans_[static_cast<std::size_t>(fault)] = {}; }
  void StopAll() { plans_ = {}; }
  bool On(Fault fault, double now) const;

 private:
  struct Plan {
    double period = 0;  ///< 0 without a schedule
    double seconds = 0;
    double until = 0;  ///< by hand
  };
  std::array<Plan, kFaults> plans_;
};

}  // namespace sim
