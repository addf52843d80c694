#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>

#include <algorithm>
#include <filesystem>

#include "core/fixed_tables.h"
#include "core/tables.h"
#include "platform/run_time_error.h"
#include "tests/platform/plant_floor.h"

using testing::HasSubstr;

namespace {

std::string AllBytes() {
  std::string all(256, '\0');
  for (int byte = 0; byte < 256; ++byte) all[static_cast<std::size_t>(byte)] = static_cast<char>(byte);
  return all;
}

}  // namespace

TEST(SerialLine, EverySettingOfTheSetupScreenOpensAndCarriesEveryByteBothWays) {
  const auto tables = std::make_unique<Tables>();
  FillFixedTables(*tables);
  Scale scale;
  PlantFloor floor(scale.Path());
  for (const std::string& settings : tables->PortSettingsTable) {
    SCOPED_TRACE(settings);
    SerialPort& port = floor.Open(0, settings.c_str());
    floor.ExpectTalk(scale, AllBytes());
    if (HasFailure()) return;
    port.Close();
  }
}

TEST(SerialLine, WithXonXoffTheDeviceHoldsOutputUpAndTheTwoBytesAreNoData) {
  Scale scale;
  PlantFloor floor(scale.Path());
  SerialPort& port = floor.Open(0, "9600,N,8,1", 1);
  scale.SendSome(
      "a\x13"
      "b");
  EXPECT_EQ(floor.Receive(2), "ab");
  port.Output("held");
  EXPECT_EQ(scale.Take(), "");
  scale.SendSome(
      "\x11"
      "c");
  EXPECT_EQ(floor.Receive(1), "c");
  floor.ports.Poll();
  EXPECT_EQ(scale.Take(4), "held");
}

TEST(SerialLine, BytesFromBeforeTheOpeningAreNoWeightOfNow) {
  Scale scale;
  PlantFloor floor(scale.Path());
  SerialPort& port = floor.Open();
  scale.SendSome("stale");
  EXPECT_TRUE(Eventually([&] { return floor.ports.Poll(), port.InBufferCount() == 5; }));
  port.Close();
  scale.SendSome("older");
  floor.Open();
  floor.ExpectTalk(scale);
}

TEST(SerialLine, AnAddressThatLeadsToNoSerialDeviceIsAnInvalidPort) {
  TemporaryFolder folder;
  Descriptor plainFile(open((folder / "file").c_str(), O_CREAT | O_WRONLY, 0600));
  const struct {
    std::string address;
    const char* reason;
  } cases[] = {
      {folder.Path(), "folder"},
      {folder / "absent", "no such device"},
      {folder / "file", "file, not a device"},
      {"/dev/null", "not a serial port"},
      {"COM1", "neither a device path"},
      {"tcp://server:65536", "neither a device path"},
      {"tcp://server:40x1", "neither a device path"},
  };
  for (const auto& bad : cases) {
    SCOPED_TRACE(bad.address);
    PlantFloor floor(bad.address);
    try {
      floor.Open(4);
      ADD_FAILURE() << "opened";
    } catch (const RunTimeError& fault) {
      EXPECT_EQ(fault.Number(), ErrorNumber::SerialPortInvalid);
      EXPECT_THAT(fault.Description(), HasSubstr("COM5 (" + bad.address + ")"));
      EXPECT_THAT(fault.Description(), HasSubstr(bad.reason));
    }
    EXPECT_FALSE(floor.ports.Port(4).PortOpen());
  }
}

TEST(SerialLine, ADeviceHeldByAnotherProgramIsInUseUntilThatProgramEnds) {
  Scale scale;
  TemporaryFolder folder;
  std::filesystem::create_symlink(scale.Path(), folder / "by-id");
  PlantFloor floor(folder / "by-id");
  Descriptor shared(open(scale.Path().c_str(), O_RDWR | O_NOCTTY));
  OtherProcess other([&] {
    PlantFloor elsewhere(scale.Path());
    elsewhere.Open();
    elsewhere.ports.Port(0).Output("!");
    while (true) pause();
    return 0;
  });
  ASSERT_EQ(scale.Take(1), "!");
  EXPECT_EQ(floor.OpeningFault(0), ErrorNumber::SerialPortInUse);
  EXPECT_FALSE(floor.ports.Port(0).PortOpen());
  other.Kill();
  EXPECT_EQ(floor.OpeningFault(0), 0);
  floor.address = scale.Path();
  EXPECT_EQ(floor.OpeningFault(1), ErrorNumber::SerialPortInUse) << "another channel under another name";
  EXPECT_NE(flock(shared.Get(), LOCK_EX | LOCK_NB), 0) << "other programs must find the device locked";
}

TEST(SerialLine, ABurstOfTenMegabytesIsTakenInBoundedStepsAndNothingIsLost) {
  constexpr std::size_t kBurst = 10'000'000;
  Scale scale;
  PlantFloor floor(scale.Path());
  SerialPort& port = floor.Open();
  std::string sent, received, chunk;
  const auto step = [&] {
    const std::string next(std::min<std::size_t>(1 << 12, kBurst - sent.size()), static_cast<char>(sent.size() >> 7));
    sent.append(next, 0, scale.SendSome(next));
    floor.ports.Poll();
    EXPECT_LE(port.InBufferCount(), 64u * 1024);
    port.Input(chunk);
    received += chunk;
  };
  EXPECT_TRUE(Eventually([&] {
    for (int count = 0; count < 100; ++count) step();
    return received.size() == kBurst;
  })) << received.size()
      << " bytes arrived";
  EXPECT_TRUE(received == sent);
}
