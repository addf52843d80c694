#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "platform/posix/descriptor.h"
#include "platform/posix/posix_system.h"
#include "platform/posix/program_folder.h"
#include "platform/run_time_error.h"
#include "tests/platform/machine.h"

namespace fs = std::filesystem;

namespace {

/// Sets a variable of the environment and puts the old value back.
class Environment {
 public:
  Environment(const char* name, const std::string& value) : name_(name) {
    const char* before = std::getenv(name);
    if (before != nullptr) before_ = before;
    wasSet_ = before != nullptr;
    setenv(name, value.c_str(), 1);
  }
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;
  ~Environment() { wasSet_ ? setenv(name_, before_.c_str(), 1) : unsetenv(name_); }

 private:
  const char* name_;
  std::string before_;
  bool wasSet_;
};

}  // namespace

TEST(OperatingSystem, ItRunsAllChannelsAndHasTheDisplayItIsGiven) {
  const PosixSystem headless("/");
  EXPECT_EQ(headless.GetVersionEx().platform, 2);
  EXPECT_EQ(headless.GetVersionEx().major, 5);
  EXPECT_EQ(headless.GetSystemMetrics(0), 1024);
  EXPECT_EQ(headless.GetSystemMetrics(1), 768);
  EXPECT_EQ(PosixSystem("/", {800, 600}).GetSystemMetrics(0), 800);
}

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

TEST(OperatingSystem, AProgramStartedByTheFirstCopyDoesNotKeepTheFolderAfterIt) {
  TemporaryFolder folder;
  auto first = std::make_unique<PosixSystem>(folder.Path());
  ASSERT_FALSE(first->PreviousInstance());
  int input[2];
  int output[2];
  ASSERT_EQ(pipe(input), 0);
  ASSERT_EQ(pipe(output), 0);
  OtherProcess helper([&] {
    dup2(input[0], STDIN_FILENO);
    dup2(output[1], STDOUT_FILENO);
    execlp("cat", "cat", nullptr);
    return 1;
  });
  char echo = '?';
  ASSERT_EQ(write(input[1], "!", 1), 1);
  ASSERT_EQ(read(output[0], &echo, 1), 1);  // the helper runs
  first.reset();
  EXPECT_FALSE(PosixSystem(folder.Path()).PreviousInstance());
  for (int end : {input[0], input[1], output[0], output[1]}) close(end);
}

TEST(OperatingSystem, AProgramFolderThatIsNoneIsTold) {
  TemporaryFolder folder;
  std::ofstream(folder / "file") << "x";
  EXPECT_EQ(FaultNumber([&] { PosixSystem(folder / "absent").PreviousInstance(); }), ErrorNumber::FileNotFound);
  EXPECT_EQ(FaultNumber([&] { PosixSystem(folder / "file").PreviousInstance(); }), ErrorNumber::PathFileAccess);
}

TEST(OperatingSystem, DateAndTimeAreLocalAndInOneFormWhateverTheLocale) {
  const Environment locale("LC_ALL", "de_DE.UTF-8");
  const Environment zone("TZ", "UTC-3");
  const PosixSystem system("/");
  const std::string text = system.DateTimeText();
  std::string form = text;
  for (char& c : form) c = c >= '0' && c <= '9' ? '0' : c;
  EXPECT_EQ(form, "0000-00-00 00:00:00") << text;
  const std::int64_t hourThere = (system.WallSeconds() / 3600 + 3) % 24;
  const std::int64_t hourBefore = (hourThere + 23) % 24;  // the hour may have turned between the two calls
  const int hour = std::stoi(text.substr(11, 2));
  EXPECT_TRUE(hour == hourThere || hour == hourBefore) << text;
  EXPECT_TRUE(Eventually([&] { return system.DateTimeText() != text; })) << "the text stands still";
}

TEST(OperatingSystem, TheProgramFolderFollowsTheEnvironment) {
  const Environment home("HOME", "/home/plant");
  {
    const Environment own("TARVEX_HOME", "/srv/../srv/scales/");
    EXPECT_EQ(ProgramFolder(), "/srv/scales");
  }
  const Environment own("TARVEX_HOME", "");
  const Environment data("XDG_DATA_HOME", "/data");
  EXPECT_EQ(ProgramFolder(), "/data/tarvex");
  const Environment relative("XDG_DATA_HOME", "data");
  EXPECT_EQ(ProgramFolder(), "/home/plant/.local/share/tarvex");
}

TEST(OperatingSystem, TheFirstStartCopiesTheShippedFormatsAndLaterOnesNothing) {
  TemporaryFolder base;
  const std::string shipped = base / "shipped";
  const std::string home = base / "a/b/home";
  fs::create_directory(shipped);
  std::ofstream(shipped + "/Tarvex-Std-OVStdFmt.Cfg") << "format";
  std::ofstream(shipped + "/README") << "x";
  fs::permissions(shipped + "/Tarvex-Std-OVStdFmt.Cfg", fs::perms(0444));

  EXPECT_EQ(FaultNumber([&] { PrepareProgramFolder(home, base / "absent"); }), ErrorNumber::FileNotFound);
  EXPECT_FALSE(fs::exists(home)) << "a folder without its formats would never be filled";

  PrepareProgramFolder(home, shipped);
  EXPECT_EQ(fs::file_size(home + "/Tarvex-Std-OVStdFmt.Cfg"), 6u);
  EXPECT_NE(fs::status(home + "/Tarvex-Std-OVStdFmt.Cfg").permissions() & fs::perms::owner_write, fs::perms::none);
  EXPECT_FALSE(fs::exists(home + "/README"));
  fs::remove(home + "/Tarvex-Std-OVStdFmt.Cfg");
  PrepareProgramFolder(home, shipped);
  EXPECT_TRUE(fs::is_empty(home));
  EXPECT_EQ(std::distance(fs::directory_iterator(base / "a/b"), {}), 1) << "nothing else may stay there";

  std::ofstream(base / "file") << "x";
  EXPECT_EQ(FaultNumber([&] { PrepareProgramFolder(base / "file", shipped); }), ErrorNumber::PathFileAccess);
}
