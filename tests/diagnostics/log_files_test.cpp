#include "diagnostics/log_files.h"

#include <gtest/gtest.h>

#include "tests/support/test_plant.h"

namespace {

class LogFilesTest : public testing::Test {
 protected:
  LogFilesTest() { tables->ProgramFolder = "/plant"; }

  std::unique_ptr<Tables> tables = std::make_unique<Tables>();
  MemoryFiles files;
  HandTurnedSystem system{"2026-01-02 03:04:05"};
  LogFiles log{*tables, files, system};
};

TEST_F(LogFilesTest, EachKindHasItsFileAndAnUnknownOneTheBareTitle) {
  const char* kinds[] = {"",           "ErrorLog-", "RecvLog-", "XmitLog-",    "SQLLog-",
                         "ActiveLog-", "OPCLog-",   "GDILog-",  "ActiveXLog-", ""};
  for (int type = 0; type < 10; ++type) {
    files.content.clear();
    log.WriteLog(type, "a");
    log.WriteLog(type, "b\r\nc");
    EXPECT_EQ(files.content[std::string("/plant/") + kinds[type] + "Tarvex.txt"],
              "2026-01-02 03:04:05 @ a\r\n2026-01-02 03:04:05 @ b\r\nc\r\n");
  }
}

TEST_F(LogFilesTest, AFileThatCannotBeWrittenIsReportedOnceUntilItCanAgain) {
  const std::string path = "/plant/ErrorLog-Tarvex.txt";
  for (int outage = 0; outage < 2; ++outage) {
    files.broken[path] = ErrorNumber::DiskFull;
    EXPECT_THROW(log.WriteLog(1, "first"), RunTimeError);
    EXPECT_NO_THROW(log.WriteLog(1, "second"));
    EXPECT_NO_THROW(log.WriteLog(5, "another file is another matter"));
    files.broken.clear();
    log.WriteLog(1, "back");
  }
  EXPECT_EQ(files.content[path], "2026-01-02 03:04:05 @ back\r\n2026-01-02 03:04:05 @ back\r\n");
}

}  // namespace
