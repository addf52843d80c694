#include "diagnostics/log_files.h"

#include <gtest/gtest.h>

#include "tests/support/test_plant.h"

namespace {

class LogFilesTest : public testing::Test {
 protected:
  LogFilesTest() { tables->ProgramFolder = "/plant"; }

  std::unique_ptr<Tables> tables = std::make_unique<Tables>();
  MemoryFiles files;
  FakeSystem system;
  LogFiles log{*tables, files, system};
};

TEST_F(LogFilesTest, EachKindHasItsFileAndAnUnknownOneTheBareTitle) {
  const struct {
    int type;
    const char* name;
  } cases[] = {
      {1, "ErrorLog-Tarvex.txt"},  {2, "RecvLog-Tarvex.txt"}, {3, "XmitLog-Tarvex.txt"}, {4, "SQLLog-Tarvex.txt"},
      {5, "ActiveLog-Tarvex.txt"}, {6, "OPCLog-Tarvex.txt"},  {7, "GDILog-Tarvex.txt"},  {8, "ActiveXLog-Tarvex.txt"},
      {0, "Tarvex.txt"},           {9, "Tarvex.txt"},         {-1, "Tarvex.txt"}};
  for (const auto& c : cases) {
    files.content.clear();
    log.WriteLog(c.type, "a");
    log.WriteLog(c.type, "b\r\nc");
    ASSERT_EQ(files.content.size(), 1U);
    EXPECT_EQ(files.content.begin()->first, std::string("/plant/") + c.name);
    EXPECT_EQ(files.content.begin()->second, "2026-01-02 03:04:05 @ a\r\n2026-01-02 03:04:05 @ b\r\nc\r\n");
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
