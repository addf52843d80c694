#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

/// What can go wrong with a line.
enum class Fault { Silence, Garbage, Cut, Split, Unplug };
inline constexpr std::size_t kFaults = 5;

std::optional<Fault> FaultOf(std::string_view name);
std::string_view NameOf(Fault fault);

/// When each fault is on: by a schedule that repeats, or by hand. Times in seconds.
class FaultPlan {
 public:
  /// On for the last `seconds` of every `period`.
  void Repeat(Fault fault, double period, double seconds);
  /// On from `now` for `seconds`.
  void Start(Fault fault, double now, double seconds);
  void Stop(Fault fault);
  bool On(Fault fault, double now) const;

 private:
  struct Plan {
    double period = 0;
    double seconds = 0;
    double until = 0;
    bool stopped = false;
  };
  std::array<Plan, kFaults> plans_;
};
