#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// What stands behind the address of a COM number.
struct PortStanding {
  enum class State {
    Present,
    NotPresent,    ///< no such device, or no hardware behind it
    NotADevice,    ///< a file, a device that is no serial line, or a text that is no address
    NoPermission,  ///< this user may not use it
    InUse,         ///< a program has it open or locked
    Unknown        ///< a device server, which is not asked
  };

  State state = State::Unknown;
  std::string device{};      ///< the same text for all addresses that lead to one device or server
  std::string group{};       ///< with `NoPermission`: the group that owns the device; empty if that cannot be told
  bool groupMayUse = false;  ///< and whether its members may use it
  std::string program{};     ///< with `InUse`: name of the program; empty if only its process is known
  int pid = 0;               ///< and its process
  bool ours = false;         ///< the process is this one
};

/// What a person needs to know of it, such as "not present", "no permission (group dialout)" or
/// "in use by minicom (4711)"; empty if nothing stands in the way.
inline std::string PortStandingText(const PortStanding& standing) {
  using State = PortStanding::State;
  switch (standing.state) {
    case State::NotPresent:
      return "not present";
    case State::NotADevice:
      return "not a serial device";
    case State::NoPermission:
      return standing.group.empty() ? "no permission" : "no permission (group " + standing.group + ")";
    case State::InUse:
      if (standing.ours) return "in use by this program";
      if (standing.program.empty()) return "in use by process " + std::to_string(standing.pid);
      return "in use by " + standing.program + " (" + std::to_string(standing.pid) + ")";
    case State::Present:
    case State::Unknown:
      break;
  }
  return {};
}

/// Tells what stands behind addresses without opening them, since opening can reset a device.
class PortProbe {
 public:
  virtual ~PortProbe() = default;

  /// One standing for each address, in their order; one look covers all. An address is a device path or
  /// `tcp://host:port`. Takes milliseconds, waits for nothing and raises nothing.
  virtual std::vector<PortStanding> LookAtAll(std::span<const std::string> addresses) const = 0;
  PortStanding LookAt(const std::string& address) const { return LookAtAll({&address, 1}).front(); }

  /// Whether a line can be set to a text such as "9600,N,8,1" at all.
  virtual bool CanSet(std::string_view settings) const = 0;
};
