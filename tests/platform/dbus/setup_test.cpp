#include <gmock/gmock.h>

#include <chrono>
#include <filesystem>
#include <fstream>

#include "config/channel_file.h"
#include "platform/posix/posix_system.h"
#include "tests/app/running_program.h"
#include "tests/platform/dbus/bus_test.h"
#include "tests/platform/plant_floor.h"
#include "tools/setup/manager/running_manager.h"

using testing::HasSubstr;

namespace {

constexpr const char* kSetup = "/org/tarvex/Setup";

TEST_F(BusTest, SetupCallsTellTheEditedChannelAndWhatIsNotThere) {
  adapter_.OfferSetup({[](int) { RaiseSubscriptOutOfRange(); }, nullptr, [] { return 7; }, ""});
  StartOnBus();
  BusClient client;
  int edited = 0;
  client.Call(kSetup, "org.freedesktop.DBus.Properties", "Get", "ss", "org.tarvex.Setup", "EditedChannel")
      .Read("v", "i", &edited);
  EXPECT_EQ(edited, 7);
  const auto answer = client.Call(kSetup, "org.tarvex.Setup", "ReloadChannel", "i", 33);
  EXPECT_EQ(answer.error, "org.tarvex.Error.Subscript");
}

/// tarvexd with two scales, and a program that changes the settings of the second.
class RunningManagerTest : public testing::Test {
 protected:
  static constexpr const char* kNeighbour = "/org/tarvex/Device/0";
  static constexpr const char* kEdited = "/org/tarvex/Device/1";

  RunningManagerTest() {
    std::filesystem::copy(TARVEX_FORMATS, folder_.Path());
    for (int ch : {0, 1}) {
      WriteChannel(ch, "Scale");
      std::ofstream(folder_ / "Tarvex-Ports.Cfg", std::ios::app)
          << ch + 1 << ",\"" << scales_[static_cast<std::size_t>(ch)].Path() << "\"\r\n";
    }
  }

  std::string ChannelFile(int ch) const { return folder_ / ("Tarvex-SCALE" + std::to_string(ch + 1) + ".Cfg"); }
  void WriteChannel(int ch, const std::string& description) {
    Tables& tables = plant_.tables;
    RestoreChannelDefaults(tables, plant_.files, ch);
    tables.ChanEnabled[ch] = True;
    tables.ChanPort[ch] = ch;
    tables.ChanDeviceDesc[ch] = description;
    WriteChannelFile(tables, plant_.files, ch);
    std::ofstream(ChannelFile(ch), std::ios::binary) << plant_.files.content[ChannelFilePath(tables, ch)];
  }
  /// Has a scale send a weight of two digits.
  void Weigh(int ch, int weight) {
    scales_[static_cast<std::size_t>(ch)].SendSome("\x02,0 00" + std::to_string(weight) + "00000000\r");
  }
  static bool IsMarkedOld(BusClient& client, const char* device) {
    return (client.Word(device, "CScaleStat") & StatusBit::Offline) != 0;
  }
  static std::string FaultOf(const std::function<void()>& step) {
    try {
      step();
    } catch (const ManagerFault& fault) {
      return fault.what();
    }
    return "none";
  }

  int argc_ = 1;
  char name_[5] = "test";
  char* argv_[2] = {name_, nullptr};
  QCoreApplication application_{argc_, argv_};
  BusDaemon daemon_;
  TestPlant plant_;
  TemporaryFolder folder_;
  std::array<Scale, 2> scales_;
  RunningManager manager_{folder_.Path()};
};

TEST_F(RunningManagerTest, OneChannelTakesItsFileAgainAndAgainAndNoStreamOfItsNeighbourIsLate) {
  daemon_.Start();
  EXPECT_FALSE(manager_.IsThere());
  const RunningProgram program(folder_.Path());
  BusClient client;
  ASSERT_TRUE(Until([&] {
    for (int ch : {0, 1}) Weigh(ch, 10);
    return client.Number(kNeighbour, "CGross") == 10 && client.Number(kEdited, "CGross") == 10;
  })) << program.Errors();
  Weigh(1, 11);
  ASSERT_TRUE(Until([&] { return client.Number(kEdited, "CGross") == 11; }));  // nothing of before is under way
  EXPECT_TRUE(manager_.IsThere());
  EXPECT_EQ(manager_.EditedChannel(), 0);
  client.Listen();
  client.SeesManager();
  client.ForgetSignals();

  std::chrono::steady_clock::duration held{};
  for (int weight = 12; weight < 32; ++weight) {
    Weigh(0, weight);
    WriteChannel(1, "Scale " + std::to_string(weight));
    client.WaitForBus();
    const auto asked = std::chrono::steady_clock::now();
    manager_.ReloadChannel(2);
    held += std::chrono::steady_clock::now() - asked;
    EXPECT_TRUE(IsMarkedOld(client, kEdited));
    const auto opened = BusClient::Heard{kEdited, "CDeviceDesc"};
    ASSERT_TRUE(Until([&] { return testing::Value(client.Signals(), testing::Contains(opened)); }));
    EXPECT_EQ(client.Text(kEdited, "CDeviceDesc"), "Scale " + std::to_string(weight));
    client.ForgetSignals();
    Weigh(1, weight);
    ASSERT_TRUE(Until([&] { return client.Number(kEdited, "CGross") == weight; }));
    EXPECT_FALSE(IsMarkedOld(client, kEdited));
    EXPECT_EQ(client.Number(kNeighbour, "CGross"), weight) << "sent before the other channel was closed";
    EXPECT_FALSE(IsMarkedOld(client, kNeighbour));
  }
  EXPECT_LT(held, 20 * std::chrono::milliseconds(50)) << "the scan was held";

  std::ofstream(ChannelFile(1)) << "2,0,notaport\r\n";
  EXPECT_THAT(FaultOf([&] { manager_.ReloadChannel(2); }),
              testing::AllOf(HasSubstr("goes on with what it had. "), HasSubstr("Tarvex-SCALE2.Cfg")));
  EXPECT_FALSE(IsMarkedOld(client, kEdited));
  EXPECT_THAT(FaultOf([&] { manager_.ReloadProtocol(42); }), HasSubstr("they are 0 to 41."));
}

TEST_F(RunningManagerTest, WhatStandsInTheWayIsToldInASentence) {
  const TemporaryFolder other;
  RunningManager elsewhere(other.Path());
  PosixSystem system(other.Path());
  ASSERT_FALSE(system.PreviousInstance());
  const std::string cure = ": press X and Continue there, or restart it, for the changes to hold.";
  const auto expectFault = [&](const std::string& why) {
    EXPECT_EQ(FaultOf([&] { elsewhere.ReloadChannel(1); }),
              "A manager runs on " + other.Path() + ", but " + why + cure);
  };
  EXPECT_TRUE(elsewhere.IsThere());
  expectFault("there is no session bus (No such file or directory)");
  daemon_.Start();
  expectFault("it is not on this session bus");
  const RunningProgram program(folder_.Path());
  BusClient client;
  ASSERT_TRUE(Until([&] { return client.SeesManager(); }));
  expectFault("the one on this session bus works on another folder, " + folder_.Path());
  EXPECT_THAT(FaultOf([] { RunningManager("/nowhere").IsThere(); }), HasSubstr("/nowhere"));
}

}  // namespace
