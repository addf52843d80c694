#include "config/system_file.h"

#include <string>
#include <vector>

#include "config/cfg_line.h"
#include "core/timer_limits.h"

namespace {

constexpr CfgFieldRow kSystemLine[] = {
    {"Timer1Interval", Setting<&Tables::Timer1Interval>, 25, kShortestInterval, kLongestInterval, OutOfRange::Replaced},
    {"Timer1Sleep", Setting<&Tables::Timer1Sleep>, 2, 0, kLongestPause, OutOfRange::Replaced},
    {"TxTimerInterval", Setting<&Tables::TxTimerInterval>, 15, kShortestInterval, kLongestInterval,
     OutOfRange::Replaced},
    {"TxTimerSleep", Setting<&Tables::TxTimerSleep>, 0, 0, kLongestPause, OutOfRange::Replaced},
    {"GDITimerInterval", Setting<&Tables::GDITimerInterval>, 25, kShortestInterval, kLongestInterval,
     OutOfRange::Replaced},
    {"GDITimerSleep", Setting<&Tables::GDITimerSleep>, 1, 0, kLongestPause, OutOfRange::Replaced},
    {"CmdStatInterlock", Setting<&Tables::CmdStatInterlock>, true},
    {"StartMinimized", Setting<&Tables::StartMinimized>, true},
};

std::string SystemFilePath(const Tables& tables) { return tables.ProgramFolder + "/TarvexSysSetup.Cfg"; }

/// Numbers that the file holds and the start refused.
std::vector<RefusedNumber> RefusedIn(const std::string& path, Tables& tables, Files& files) try {
  const std::string content = files.Read(path);
  CfgReader reader(content, path);
  CfgRecord record;
  record.Read(reader, kSystemLine, tables);
  return record.Refused();
} catch (const RunTimeError&) {
  return {};  // of such a file nothing was taken
}

}  // namespace

void ReadSystemFile(Tables& tables, Files& files, Log& log) {
  const std::string path = SystemFilePath(tables);
  const std::string content = files.OpenAndRead(path);
  if (content.empty()) {
    RestoreCfgDefaults(kSystemLine, tables);
    WriteSystemFile(tables, files);
    log.WriteLog(LogType::Error, path + " File Not Found.");
    return;
  }
  CfgReader reader(content, path);
  CfgRecord record;
  record.Read(reader, kSystemLine, tables);
  record.Commit();
  if (record.Remarks().empty()) return;
  std::string description;
  for (const std::string& remark : record.Remarks()) description += (description.empty() ? "" : "; ") + remark;
  throw RunTimeError(ErrorNumber::SubscriptOutOfRange, description);
}

void WriteSystemFile(Tables& tables, Files& files) {
  const std::string path = SystemFilePath(tables);
  CfgWriter writer;
  WriteCfgLine(writer, kSystemLine, tables, 0, 0, RefusedIn(path, tables, files));
  files.Replace(path, writer.Content());
}
