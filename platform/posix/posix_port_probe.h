#pragma once

#include "platform/port_probe.h"

/// The probe on devices of the operating system. A holder is found by its open descriptors, which the system shows of
/// one's own processes only (of all to the superuser), by its lock on the device, or by the lock file that terminal
/// programs leave.
class PosixPortProbe : public PortProbe {
 public:
  std::vector<PortStanding> LookAtAll(std::span<const std::string> addresses) const override;
  bool CanSet(std::string_view settings) const override;
};

/// Process that holds a lock on a file, folder or device; 0 if there is none or it cannot be told. For a program's
/// folder that is the copy running on it.
int LockHolder(const std::string& path);
