#include <QTimer>
#include <chrono>

#include "tests/platform/dbus/bus_test.h"

namespace {

constexpr const char* kThere = "Session bus: other programs reach the system as org.tarvex.Manager";

class BusLinkTest : public BusTest {
 protected:
  bool LogHolds(std::size_t lines) {
    return Until([&] { return log_.size() >= lines; });
  }
  /// One visit that publishes another weight than the one before. The longest time a visit took is kept.
  void PublishWeight() {
    const auto begin = std::chrono::steady_clock::now();
    plant_.Tick(0, std::to_string(1'000'000 + ++weight_) + "\r");
    longest_ = std::max(longest_, std::chrono::steady_clock::now() - begin);
  }

  int weight_ = 0;
  std::chrono::steady_clock::duration longest_{};
};

TEST_F(BusLinkTest, WithoutABusTheSystemRunsAndSaysSoOnce) {
  adapter_.Start();
  PublishWeight();
  ASSERT_EQ(log_.size(), 1U);
  EXPECT_NE(log_.front().find("No session bus"), std::string::npos);
}

TEST_F(BusLinkTest, TheSystemComesToABusThatAppearsLaterAndToOneThatWasStartedAgain) {
  adapter_.Start();
  daemon_.Start();
  ASSERT_TRUE(LogHolds(2));
  EXPECT_EQ(log_[1], kThere);
  daemon_.Kill();
  ASSERT_TRUE(LogHolds(3));
  EXPECT_NE(log_[2].find("No session bus"), std::string::npos);
  PublishWeight();
  daemon_.Start();
  ASSERT_TRUE(LogHolds(4));
  EXPECT_EQ(log_[3], kThere);
  BusClient client;
  EXPECT_EQ(client.Number(kScale, "CGross"), 1'000'000 + weight_) << "what was weighed meanwhile is there";
}

TEST_F(BusLinkTest, ANameThatAnotherProgramOwnsIsTakenWhenThatProgramEnds) {
  daemon_.Start();
  auto other = std::make_unique<BusClient>();
  ASSERT_GE(sd_bus_request_name(other->Bus(), "org.tarvex.Manager", 0), 0);
  adapter_.Start();
  ASSERT_TRUE(LogHolds(1));
  EXPECT_EQ(log_[0], "Session bus: another program owns org.tarvex.Manager; waiting for it to end");
  other.reset();
  ASSERT_TRUE(LogHolds(2));
  EXPECT_EQ(log_[1], kThere);
}

TEST_F(BusLinkTest, AClientThatFloodsTheSystemLeavesTheTimersTheirTurn) {
  StartOnBus();
  BusClient flood;
  constexpr int kWrites = 10'000;
  for (int number = 1; number <= kWrites; ++number) {
    flood.Post(kScale, "org.freedesktop.DBus.Properties", "Set", "ssv", "org.tarvex.Device", "CDeviceID", "i", number);
  }
  const auto device = plant_.manager.Publishing().Devices().Objects().At(0);
  int served = 0, most = 0;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] {
    most = std::max(most, device->CDeviceID - served);
    served = device->CDeviceID;
  });
  timer.start(0);
  ASSERT_TRUE(Until([&] { return device->CDeviceID == kWrites; }));
  EXPECT_LE(most, 100) << "writes between two turns of a timer";
}

TEST_F(BusLinkTest, AClientThatDiesInTheMiddleOfACallLeavesEveryoneElseAlone) {
  StartOnBus();
  BusClient other;
  for (int round = 0; round < 20; ++round) {
    BusClient dying;
    dying.Post(kScale, "org.tarvex.Device", "CDoUpdate", "");
    dying.Call(kScale, "org.freedesktop.DBus.Peer", "Ping");
    dying.Post(kScale, "org.freedesktop.DBus.Properties", "Set", "ssv", "org.tarvex.Device", "CDeviceID", "i", round);
  }
  EXPECT_TRUE(other.SeesManager());
}

TEST_F(BusLinkTest, AListenerThatIsStoppedDelaysNoTickAndNoOtherClient) {
  StartOnBus();
  BusClient stopped, client;
  stopped.Listen();
  stopped.StopReading();
  for (int visit = 0; visit < 20'000; ++visit) PublishWeight();
  EXPECT_LT(longest_, std::chrono::milliseconds(200));
  EXPECT_EQ(client.Number(kScale, "CGross"), 1'000'000 + weight_);
}

TEST_F(BusLinkTest, ABusThatHangsDelaysNoTickAndLaterTellsTheWeightOfThen) {
  StartOnBus();
  BusClient client;
  client.Listen();
  daemon_.Hang();
  constexpr int kVisits = 60'000;
  for (int visit = 0; visit < kVisits; ++visit) PublishWeight();
  daemon_.Resume();
  EXPECT_LT(longest_, std::chrono::milliseconds(200));
  const auto& heard = client.Signals();
  ASSERT_TRUE(Until([&] { return client.Number(kScale, "CGross") == 1'000'000 + weight_; }));
  EXPECT_LT(heard.size(), static_cast<std::size_t>(kVisits) / 2) << "what the bus does not take is not piled up";
}

}  // namespace
