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
  PortProbe& probe;
  /// Whether the adapter can set these line settings.
  std::function<bool(const std::string& settings)> takesSettings;
  /// Holders that are no finding, such as the manager itself: the beginning of `PortCondition::detail`.
  std::vector<std::string> expectedHolders{};
};

/// Settings of channel `ch` as they stand in the tables. Its port is looked at if the channel is enabled.
Findings CheckChannel(const Tables& tables, int ch, const PortsOfMachine& ports);

/// Ports that more than one enabled channel uses, by number or by address, up to `MaxChannel`.
Findings CheckSharedPorts(const Tables& tables, const PortsOfMachine& ports);

/// The record of protocol `proto`, 1 to 41.
Findings CheckProtocol(const Tables& tables, int proto);
