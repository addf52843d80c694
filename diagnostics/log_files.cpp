#include "diagnostics/log_files.h"

#include "core/tables.h"

namespace {

constexpr std::string_view kPrefixes[] = {"",           "ErrorLog-", "RecvLog-", "XmitLog-",   "SQLLog-",
                                          "ActiveLog-", "OPCLog-",   "GDILog-",  "ActiveXLog-"};
constexpr int kTypes = 8;

std::size_t KnownType(int type) { return type >= 1 && type <= kTypes ? static_cast<std::size_t>(type) : 0; }

}  // namespace

std::string LogFiles::FileName(int type) { return std::string(kPrefixes[KnownType(type)]) + "Tarvex.txt"; }

void LogFiles::WriteLog(int type, std::string_view text) {
  bool& failing = failing_[KnownType(type)];
  try {
    files_.Append(tables_.ProgramFolder + "/" + FileName(type),
                  system_.DateTimeText() + " @ " + std::string(text) + "\r\n");
    failing = false;
  } catch (const RunTimeError&) {
    const bool failedBefore = failing;
    failing = true;
    if (!failedBefore) throw;
  }
}
