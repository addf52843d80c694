#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>

#include "platform/posix/posix_port_probe.h"
#include "tests/platform/plant_floor.h"

namespace {

using State = PortStanding::State;

State StateOf(const std::string& address) { return PosixPortProbe().LookAt(address).state; }

TEST(PortProbe, AnAddressIsToldByWhatStandsThere) {
  TemporaryFolder folder;
  std::ofstream(folder / "file") << "no device";
  EXPECT_EQ(StateOf(folder / "none"), State::NotPresent);
  EXPECT_EQ(StateOf(folder / "file/below"), State::NotPresent);
  EXPECT_EQ(StateOf(folder / "file"), State::NotADevice);
  EXPECT_EQ(StateOf(folder.Path()), State::NotADevice);
  EXPECT_EQ(StateOf("COM1"), State::NotADevice);
  EXPECT_EQ(StateOf("tcp://nobody.invalid:4001"), State::Unknown);
  EXPECT_EQ(PosixPortProbe().LookAt("TCP://Nobody.Invalid:04001").device, "tcp://nobody.invalid:4001");
}

TEST(PortProbe, TwoAddressesOfOneDeviceAreKnownAsOne) {
  TemporaryFolder folder;
  const Scale scale;
  std::filesystem::create_symlink(scale.Path(), folder / "by-id");
  const std::vector<std::string> addresses = {folder / "by-id", scale.Path(), folder / "none"};
  const auto standings = PosixPortProbe().LookAtAll(addresses);
  EXPECT_EQ(standings[0].state, State::Present);
  EXPECT_EQ(standings[0].device, standings[1].device);
  EXPECT_NE(standings[0].device, standings[2].device);
}

/// A port in the hands of another process, which opens it in its own way.
class Holder {
 public:
  Holder(const std::string& path, void (*take)(int device))
      : process_([&] {
          const int device = open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
          take(device);
          report_.SendSome("x");
          pause();
          return 0;
        }) {
    ready_.Take(1);
  }
  void End() { process_.Kill(); }

 private:
  std::array<int, 2> pipe_ = [] {
    std::array<int, 2> ends{};
    EXPECT_EQ(pipe2(ends.data(), O_NONBLOCK | O_CLOEXEC), 0);
    return ends;
  }();
  FarEnd ready_{pipe_[0]};
  FarEnd report_{pipe_[1]};
  OtherProcess process_;
};

TEST(PortProbe, TheProcessThatHoldsADeviceIsNamedUntilItEnds) {
  const Scale scale, other;
  Holder holder(scale.Path(), [](int) {});
  const PortStanding held = PosixPortProbe().LookAt(scale.Path());
  ASSERT_EQ(held.state, State::InUse);
  EXPECT_EQ(PortStandingText(held), "in use by platform_tests (" + std::to_string(held.pid) + ")");
  EXPECT_NE(held.pid, getpid());
  EXPECT_EQ(StateOf(other.Path()), State::Present);
  holder.End();
  EXPECT_EQ(StateOf(scale.Path()), State::Present);
}

TEST(PortProbe, WhatThisProgramHoldsItselfIsToldApart) {
  const Scale scale;
  PlantFloor floor(scale.Path());
  floor.Open();
  EXPECT_EQ(PortStandingText(PosixPortProbe().LookAt(scale.Path())), "in use by this program");
  Holder holder(scale.Path(), [](int) {});
  EXPECT_FALSE(PosixPortProbe().LookAt(scale.Path()).ours);
}

/// Runs `work` as a user without rights, where the tests run as the superuser.
int AsNobody(const std::function<int()>& work) {
  OtherProcess process([&] { return geteuid() == 0 && setresuid(65534, 65534, 65534) != 0 ? 99 : work(); });
  return process.ExitStatus();
}

TEST(PortProbe, AnotherUsersHoldIsSeenByItsLock) {
  if (geteuid() != 0) GTEST_SKIP() << "needs a second user";
  const Scale scale;
  ASSERT_EQ(chmod(scale.Path().c_str(), 0666), 0);
  Holder holder(scale.Path(), [](int device) { flock(device, LOCK_EX); });
  const int pid = PosixPortProbe().LookAt(scale.Path()).pid;
  EXPECT_EQ(LockHolder(scale.Path()), pid);
  EXPECT_EQ(AsNobody([&] { return PosixPortProbe().LookAt(scale.Path()).pid == pid ? 0 : 1; }), 0);
}

TEST(PortProbe, WithoutPermissionTheGroupThatOwnsTheDeviceIsNamed) {
  if (geteuid() != 0) GTEST_SKIP() << "needs a second user";
  const Scale scale;
  ASSERT_EQ(chown(scale.Path().c_str(), 0, 20), 0);
  for (const mode_t mode : {0660, 0600}) {
    ASSERT_EQ(chmod(scale.Path().c_str(), mode), 0);
    EXPECT_EQ(AsNobody([&] {
                const PortStanding standing = PosixPortProbe().LookAt(scale.Path());
                return PortStandingText(standing) == "no permission (group dialout)" &&
                               standing.groupMayUse == (mode == 0660)
                           ? 0
                           : 1;
              }),
              0);
  }
}

}  // namespace
