#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "platform/posix/posix_files.h"
#include "platform/run_time_error.h"
#include "tests/platform/machine.h"

namespace fs = std::filesystem;
using testing::HasSubstr;

namespace {

class FilesOnDisk : public testing::Test {
 protected:
  TemporaryFolder folder;
  const std::string file = folder / "Tarvex-SCALE1.Cfg";
  PosixFiles files;

  /// What lies on the disk, without help of the code under test.
  static std::string Content(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  void ExpectNothingBut(std::size_t count) {
    std::size_t found = 0;
    for (const auto& entry : fs::directory_iterator(folder.Path())) {
      ++found;
      EXPECT_LE(found, count) << "left over: " << entry.path();
    }
  }
};

}  // namespace

TEST_F(FilesOnDisk, AMissingFileIsCreatedEmptyAndBytesComeBackAsTheyWere) {
  EXPECT_EQ(files.Read(file), "");
  EXPECT_FALSE(fs::exists(file)) << "reading alone creates nothing";
  EXPECT_EQ(files.OpenAndRead(file), "");
  EXPECT_TRUE(fs::exists(file));
  const std::string bytes("\0\r\n\x1a\xff,\"x\"", 9);
  files.Replace(file, bytes);
  EXPECT_EQ(files.OpenAndRead(file), bytes);
  files.Append(file, "line\r\n");
  EXPECT_EQ(Content(file), bytes + "line\r\n");
}

TEST_F(FilesOnDisk, EachFaultHasItsNumberAndNamesTheFile) {
  fs::create_symlink("circle", folder / "circle");
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  std::ofstream(folder / "huge") << "x";
  fs::resize_file(folder / "huge", 65'000'000);

  enum Operation { Read = 1, Replace = 2, Append = 4, Any = 7 };
  const struct {
    std::string path;
    int operations;
    int number;
    const char* reason;
  } cases[] = {
      {folder.Path(), Any, ErrorNumber::PathFileAccess, "folder"},
      {folder / "absent/x.Cfg", Any, ErrorNumber::FileNotFound, "no such file or folder"},
      {folder / "circle", Any, ErrorNumber::PathFileAccess, "circle"},
      {folder / "pipe", Any, ErrorNumber::PathFileAccess, "not a file"},
      {folder / "huge", Read, ErrorNumber::DeviceIo, "too large"},
      {"/dev/full", Append, ErrorNumber::DiskFull, "disk is full"},
  };
  for (const auto& fault : cases) {
    for (int operation : {Read, Replace, Append}) {
      if ((fault.operations & operation) == 0) continue;
      SCOPED_TRACE(fault.path + ", operation " + std::to_string(operation));
      try {
        if (operation == Read) files.OpenAndRead(fault.path);
        if (operation == Replace) files.Replace(fault.path, "new");
        if (operation == Append) files.Append(fault.path, "line");
        ADD_FAILURE() << "nothing raised";
      } catch (const RunTimeError& raised) {
        EXPECT_EQ(raised.Number(), fault.number);
        EXPECT_THAT(raised.Description(), AllOf(HasSubstr(fault.path), HasSubstr(fault.reason)));
      }
    }
  }
}

TEST_F(FilesOnDisk, AFullDiskLeavesTheOldFileAndNoHalfLine) {
  files.Replace(file, "old");
  files.Append(folder / "log", "0123456789");
  {
    FullDisk disk(12);
    EXPECT_EQ(FaultNumber([&] { files.Replace(file, "more than twelve bytes"); }), ErrorNumber::DiskFull);
    EXPECT_EQ(FaultNumber([&] { files.Append(folder / "log", "does not fit"); }), ErrorNumber::DiskFull);
  }
  EXPECT_EQ(Content(file), "old");
  EXPECT_EQ(Content(folder / "log"), "0123456789");
  ExpectNothingBut(2);
}

TEST_F(FilesOnDisk, AWriterKilledAtAnyMomentLeavesTheFileWholeOldOrWholeNew) {
  const std::string contents[] = {std::string(70'000, 'a'), std::string(50'000, 'b')};
  files.Replace(file, contents[0]);
  int changes = 0;
  std::string last = contents[0];
  for (int round = 0; round < 60; ++round) {
    OtherProcess writer([&] {
      for (int turn = 0;; ++turn) PosixFiles().Replace(file, contents[turn % 2 == 0 ? 1 : 0]);
      return 0;
    });
    for (int look = 0; look <= round; ++look) {
      const std::string now = Content(file);
      ASSERT_TRUE(now == contents[0] || now == contents[1]) << now.size() << " bytes";
      changes += now != last ? 1 : 0;
      last = now;
    }
    writer.Kill();
    const std::string left = Content(file);
    ASSERT_TRUE(left == contents[0] || left == contents[1]) << left.size() << " bytes";
  }
  EXPECT_GT(changes, 0) << "no writer ever came to write";
  files.Replace(file, "after");
  EXPECT_EQ(Content(file), "after");
  ExpectNothingBut(1);
}
