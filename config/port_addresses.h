#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "platform/files.h"

/// Which device or server stands behind a COM number: the file "Tarvex-Ports.Cfg" of the program's folder, one
/// line a port: number (1 to 68), address in double quotes. An address is a device path or `tcp://host:port`.
class PortAddresses {
 public:
  /// Reads the file of `programFolder` in place of what was read before. A missing file is none and is not created:
  /// every port has its own name then. With two lines for one port the last one holds, damaged or not. A damaged line
  /// closes its port; one whose number cannot be read, or a file that cannot be, closes all ports. Raises for the first
  /// damaged line, with file, line and field; the lines that are good hold all the same.
  void Load(Files& files, const std::string& programFolder);

  /// Address of COM `number`; a number without a line is `/dev/ttyS(number-1)`. Raises 8002 for a port that a damaged
  /// line has closed: what hangs at the device of its own name would be shown as something else.
  std::string AddressOf(int number) const;

 private:
  struct Line {
    std::string address;
    std::string damage{};  ///< what is wrong with it, with file, line and field; empty for a good line
  };

  void TakeLine(std::string_view line, const std::string& path, int lineNumber);

  std::map<int, Line> lines_;     // the last one of each port
  std::string damageToAllPorts_;  // of the first line whose port cannot be told
};
