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

TEST_F(BusLinkTest, AListenerThatIsStoppedDelaysNoTickAndNoOtherClient) {
  StartOnBus();
  BusClient stopped, client;
  stopped.Listen();
  stopped.StopReading();
  for (int visit = 0; visit < 20'000; ++visit) PublishWeight();
  EXPECT_LT(longest_, std::chrono::milliseconds(200));
  EXPECT_EQ(client.Number(kScale, "CGross"), 1'000'000 + weight_);
}

}  // namespace
