#include "platform/dbus/bus_link.h"

#include <chrono>
#include <ctime>
#include <optional>
#include <utility>

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

/// A link of its own that offers one method, with a client that calls it and never looks at an answer.
class BusLoadTest : public BusTest {
 protected:
  static constexpr int kCalls = 100;

  void CallALot() {
    daemon_.Start();
    link_.Start();
    ASSERT_TRUE(Until([&] { return !log_.empty(); }));
    client_.emplace();
    for (int call = 0; call < kCalls; ++call) client_->Post("/server", "org.tarvex.Server", "Serve");
    client_->WaitForBus();
  }
  std::uint64_t Waiting() const {
    std::uint64_t messages = 0;
    sd_bus_get_n_queued_write(link_.Bus(), &messages);
    return messages;
  }
  /// The bus hangs, and answers fill up what may wait for it.
  void FillUp() {
    CallALot();
    daemon_.Hang();
    const std::string text(1000, 'x');
    while (Waiting() < 250) {
      sd_bus_emit_signal(link_.Bus(), "/server", "org.tarvex.Server", "Changed", "s", text.c_str());
    }
    ASSERT_TRUE(Until([&] { return link_.Congested(); }));
  }
  static int Serve(sd_bus_message* call, void* test, sd_bus_error*) {
    auto& self = *static_cast<BusLoadTest*>(test);
    const auto end = std::chrono::steady_clock::now() + self.work_;
    while (std::chrono::steady_clock::now() < end) {
    }
    ++self.served_;
    return sd_bus_reply_method_return(call, nullptr);
  }
  static constexpr sd_bus_vtable kServer[] = {SD_BUS_VTABLE_START(0),
                                              SD_BUS_METHOD("Serve", nullptr, nullptr, Serve, 0), SD_BUS_VTABLE_END};

  std::chrono::milliseconds work_{0};  ///< that a call takes
  int served_ = 0;
  BusLink link_{"org.tarvex.Manager",
                {.connected =
                     [this](sd_bus* bus) {
                       return sd_bus_add_object_vtable(bus, nullptr, "/server", "org.tarvex.Server", kServer, this);
                     },
                 .flush = [] {},
                 .log = [this](const std::string& line) { log_.push_back(line); }}};
  std::optional<BusClient> client_;
};

TEST_F(BusLoadTest, CallsThatTakeLongLeaveTheTimersTheirTurn) {
  CallALot();
  work_ = std::chrono::milliseconds(3);
  int seen = served_, most = 0;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] { most = std::max(most, served_ - std::exchange(seen, served_)); });
  timer.start(1);
  EXPECT_TRUE(Until([&] { return served_ == kCalls; }));
  EXPECT_LE(most, 6) << "calls served between two ticks";
}

TEST_F(BusLoadTest, WhileTheBusTakesNothingNoCallIsTakenNoTimeIsSpentAndAllAreServedLater) {
  FillUp();
  const std::uint64_t waiting = Waiting();
  EXPECT_LE(waiting, 260U);
  const auto begin = std::chrono::steady_clock::now();
  const std::clock_t processor = std::clock();
  int ticks = 0;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] { ++ticks; });
  timer.start(2);
  EXPECT_TRUE(Until([&] { return ticks == 100; }));
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
  EXPECT_LT(static_cast<double>(std::clock() - processor) / CLOCKS_PER_SEC, time.count() / 2);
  EXPECT_EQ(Waiting(), waiting);
  daemon_.GoOn();
  EXPECT_TRUE(Until([&] { return served_ == kCalls && !link_.Congested(); }));
  EXPECT_TRUE(client_->SeesManager());
}

TEST_F(BusLoadTest, ABusThatGoesAwayWhileCallsAreHeldBackIsSeen) {
  FillUp();
  daemon_.Kill();
  EXPECT_TRUE(Until([&] { return log_.size() == 2; }));
}

TEST_F(BusLoadTest, WhatWaitsAtTheEndArrivesAndABusThatHangsIsNotWaitedForLong) {
  for (const bool hangs : {false, true}) {
    CallALot();
    client_->Listen();
    daemon_.Hang();
    const std::string text(1000, 'x');
    while (Waiting() == 0)
      sd_bus_emit_signal(link_.Bus(), "/org/tarvex", "org.tarvex.Server", "Full", "s", text.c_str());
    sd_bus_emit_signal(link_.Bus(), "/org/tarvex", "org.tarvex.Server", "Last", "");
    if (!hangs) daemon_.GoOn();
    const auto begin = std::chrono::steady_clock::now();
    link_.Stop();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1));
    if (hangs) break;
    const BusClient::Heard last{"/org/tarvex", "Last"};
    EXPECT_TRUE(Until([&] { return !client_->Signals().empty() && client_->Signals().back() == last; }));
    daemon_.Kill();
    log_.clear();
  }
}

}  // namespace
