#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/tables.h"
#include "platform/port_probe.h"

/// A questionable setting.
struct Finding {
  std::string file;     ///< without its folder
  std::string field;    ///< as the file's table, or "line 17" of a status row
  std::string problem;  ///< with the value
  std::string cure;

  /// "file, field: problem; cure".
  std::string Line() const { return file + ", " + field + ": " + problem + "; " + cure; }
};

using Findings = std::vector<Finding>;

/// What the check asks of the machine.
struct PortsOfMachine {
  /// Address behind a COM number. Raises 8002 for a port that a damaged line of the ports file has closed.
  std::function<std::string(int comNumber)> addressOf;
  const PortProbe& probe;
  int manager = 0;  ///< process that runs on these settings and may hold the ports; 0 for none
};

/// Settings of channel `ch` as they stand in the tables, but for its port.
Findings CheckChannel(const Tables& tables, int ch, const PortProbe& probe);

/// Ports of the enabled channels up to `MaxChannel`: what stands in the way of opening them, and those that more than
/// one channel uses, by number or by device.
Findings CheckPorts(const Tables& tables, const PortsOfMachine& ports);

/// The record of protocol `proto`, 1 to 41.
Findings CheckProtocol(const Tables& tables, int proto);
