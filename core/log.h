#pragma once

#include <string_view>

/// The eight log files.
namespace LogType {
inline constexpr int Error = 1;
inline constexpr int Received = 2;
inline constexpr int Transmitted = 3;
inline constexpr int Sql = 4;
inline constexpr int Activity = 5;
inline constexpr int Opc = 6;
inline constexpr int Drawing = 7;
inline constexpr int Automation = 8;
}  // namespace LogType

/// The one road to the log files.
class Log {
 public:
  virtual ~Log() = default;
  /// Appends one line to the log file of `type` (`LogType`). Raises what the file system raises.
  virtual void WriteLog(int type, std::string_view text) = 0;
};
