#pragma once

#include <map>
#include <set>
#include <string>

#include "platform/port_probe.h"

/// Ports as its user says they are: every address stands for a device of its own that is present, and all settings
/// can be set, unless it is told otherwise.
class MemoryPortProbe : public PortProbe {
 public:
  std::map<std::string, PortStanding> standing;  ///< by address; without `device` the address itself is it
  std::set<std::string, std::less<>> refused;    ///< settings

  std::vector<PortStanding> LookAtAll(std::span<const std::string> addresses) const override {
    std::vector<PortStanding> found;
    for (const std::string& address : addresses) {
      const auto told = standing.find(address);
      found.push_back(told == standing.end() ? PortStanding{PortStanding::State::Present} : told->second);
      if (found.back().device.empty()) found.back().device = address;
    }
    return found;
  }
  bool CanSet(std::string_view settings) const override { return !refused.contains(settings); }
};
