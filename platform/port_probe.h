#pragma once

#include <string>

/// What stands in the way of opening a port.
enum class PortState {
  Free,
  NotPresent,
  NoPermission,  ///< detail: the group that may use it
  InUse,         ///< detail: name and number of the process that holds it
  Unknown        ///< a device server, which is not asked
};

struct PortCondition {
  PortState state = PortState::Free;
  std::string detail{};
};

/// Looks at the device behind an address without opening it, so that nobody's line is disturbed.
class PortProbe {
 public:
  virtual ~PortProbe() = default;
  /// `address` is a device path or `tcp://host:port`. Takes some milliseconds and never waits.
  virtual PortCondition Look(const std::string& address) = 0;
};

/// A few words for people: "not present", "no permission (group dialout)", "in use by minicom (4711)"; empty for a port
/// that is free or unknown.
inline std::string Describe(const PortCondition& condition) {
  switch (condition.state) {
    case PortState::Free:
    case PortState::Unknown:
      return {};
    case PortState::NotPresent:
      return "not present";
    case PortState::NoPermission:
      return "no permission (group " + condition.detail + ")";
    case PortState::InUse:
      return "in use by " + condition.detail;
  }
  return {};
}
