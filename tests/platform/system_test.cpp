#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "platform/posix/descriptor.h"
#include "platform/posix/posix_system.h"
#include "platform/posix/program_folder.h"
#include "platform/run_time_error.h"
#include "tests/platform/machine.h"

namespace fs = std::filesystem;

TEST(OperatingSystem, TheSecondCopyInAFolderIsRefusedUntilTheFirstDiesHoweverItDies) {
  TemporaryFolder folder;
  TemporaryFolder elsewhere;
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const Descriptor readEnd(ready[0]);
  const Descriptor writeEnd(ready[1]);
  OtherProcess first([&] {
    PosixSystem system(folder.Path());
    const char answer = system.PreviousInstance() ? 'y' : 'n';
    if (write(writeEnd.Get(), &answer, 1) != 1) return 1;
    while (true) pause();
    return 0;
  });
  char answer = '?';
  ASSERT_EQ(read(readEnd.Get(), &answer, 1), 1);
  EXPECT_EQ(answer, 'n');
  PosixSystem second(folder.Path());
  EXPECT_TRUE(second.PreviousInstance());
  EXPECT_FALSE(PosixSystem(elsewhere.Path()).PreviousInstance());
  first.Kill();
  EXPECT_FALSE(second.PreviousInstance());
  EXPECT_FALSE(second.PreviousInstance()) << "a copy may not take itself for another one";
}

TEST(OperatingSystem, TheFirstStartCopiesTheShippedFormatsAndLaterOnesNothing) {
  TemporaryFolder base;
  const std::string shipped = base / "shipped";
  const std::string home = base / "a/b/home";
  fs::create_directory(shipped);
  std::ofstream(shipped + "/Tarvex-Std-OVStdFmt.Cfg") << "format";
  fs::permissions(shipped + "/Tarvex-Std-OVStdFmt.Cfg", fs::perms(0444));

  EXPECT_EQ(FaultNumber([&] { PrepareProgramFolder(home, base / "absent"); }), ErrorNumber::FileNotFound);
  EXPECT_FALSE(fs::exists(home)) << "a folder without its formats would never be filled";

  PrepareProgramFolder(home, shipped);
  EXPECT_EQ(fs::file_size(home + "/Tarvex-Std-OVStdFmt.Cfg"), 6u);
  EXPECT_NE(fs::status(home + "/Tarvex-Std-OVStdFmt.Cfg").permissions() & fs::perms::owner_write, fs::perms::none);
  fs::remove(home + "/Tarvex-Std-OVStdFmt.Cfg");
  PrepareProgramFolder(home, shipped);
  EXPECT_TRUE(fs::is_empty(home));
}
