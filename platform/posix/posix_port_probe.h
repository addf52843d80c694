#pragma once

#include "platform/port_probe.h"

class PosixPortProbe : public PortProbe {
 public:
  /// What this process holds itself does not count. Of other users' processes the kernel tells nothing to anybody but
  /// the superuser.
  PortCondition Look(const std::string& address) override;
};
