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

TEST(OperatingSystem, TheFirstStartCopiesTheShippedFormatsAndLaterOnesNothing) {
  TemporaryFolder base;
  const std::string shipped = base / "shipped";
  const std::string home = base / "a/b/home";
  fs::create_directory(shipped);
  std::ofstream(shipped + "/Tarvex-Std-OVStdFmt.Cfg") << "format";
  fs::permissions(shipped + "/Tarvex-Std-OVStdFmt.Cfg", fs::perms(0444));

  EXPECT_EQ(FaultNumber([&] { PrepareProgramFolder(home, base / "absent"); }), ErrorNumber::FileNotFound);
  EXPECT_FALSE(fs::exists(home)) << "a folder without its formats would never be filled";

  try {
    const FullDisk full(3);
    PrepareProgramFolder(home, shipped);
    FAIL();
  } catch (const RunTimeError& fault) {
    EXPECT_EQ(fault.Number(), ErrorNumber::DiskFull);
    EXPECT_EQ(fault.Description().find(home), 0U) << fault.Description() << " is not the shipped file's fault";
  }
  EXPECT_TRUE(fs::is_empty(base / "a/b"));

  PrepareProgramFolder(home, shipped);
  EXPECT_EQ(fs::file_size(home + "/Tarvex-Std-OVStdFmt.Cfg"), 6u);
  EXPECT_NE(fs::status(home + "/Tarvex-Std-OVStdFmt.Cfg").permissions() & fs::perms::owner_write, fs::perms::none);
  fs::remove(home + "/Tarvex-Std-OVStdFmt.Cfg");
  PrepareProgramFolder(home, shipped);
  EXPECT_TRUE(fs::is_empty(home));
}
