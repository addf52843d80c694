#pragma once

#include <map>
#include <string>
#include <string_view>

#include "platform/files.h"

/// Which device or server stands behind a COM number: the file "Tarvex-Ports.Cfg" of the program's folder, one
/// line a port: number (1 to 68), address in double quotes. An address is a device path or `tcp://host:port`.
class PortAddresses {
 public:
  /// Reads the file of `programFolder` in place of what was read before. A missing file is none and is not created:
  /// every port has its own name then. With two lines for one port the last one holds. Raises for the first damaged
  /// line, with file, line and field; the lines that are good hold all the same.
  void Load(Files& files, const std::string& programFolder);

  /// Address of COM `number`; a number without a line is `/dev/ttyS(number-1)`.
  std::string AddressOf(int number) const;

 private:
  void TakeLine(std::string_view line, const std::string& path, int lineNumber);

  std::map<int, std::string> addresses_;
};
