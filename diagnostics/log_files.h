#pragma once

#include <array>
#include <string>
#include <string_view>

#include "core/log.h"
#include "platform/files.h"
#include "platform/system.h"

struct Tables;

/// The eight log files in the program's folder. A line is the date and time, " @ " and the text. Each line opens
/// and closes its file, so that the log survives a crash and can be read at any time.
class LogFiles : public Log {
 public:
  LogFiles(const Tables& tables, Files& files, System& system) : tables_(tables), files_(files), system_(system) {}

  /// A type outside 1 to 8 has no prefix in its file name. Raises what the file system raises, once: while a
  /// file cannot be written its further lines are dropped, so that a full disk does not end every tick.
  void WriteLog(int type, std::string_view text) override;

  /// Name of the log file of a type, such as "ErrorLog-Tarvex.txt".
  static std::string FileName(int type);

 private:
  const Tables& tables_;
  Files& files_;
  System& system_;
  std::array<bool, 9> failing_{};  ///< by type; 0 for the file without a prefix
};
