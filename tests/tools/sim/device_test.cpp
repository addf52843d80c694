#include "tools/sim/device.h"

#include <gtest/gtest.h>

using namespace sim;

namespace {

/// A wire whose far end is the test.
struct FakeLine : Line {
  bool plugged = false;
  std::string sent;
  std::string waiting;

  void Plug() override { plugged = true; }
  void Pull() override { plugged = false; }
  bool Plugged() const override { return plugged; }
  std::string Address() const override { return "/fake"; }
  int Watched() const override { return -1; }
  void Notice(short) override {}
  bool Listened() const override { return plugged; }
  std::string Receive() override { return std::exchange(waiting, {}); }
  std::size_t Send(std::string_view bytes) override {
    sent += bytes;
    return bytes.size();
  }
};

const std::string kFrame(
    "\x02\x2B\x20\x20"
    "002500"
    "000000\r");

DeviceSettings FloorScale() {
  DeviceSettings settings;
  settings.baud = 0;
  settings.scale.load = {{250, 1000}};
  return settings;
}

/// A device whose clock the test drives in steps of a hundredth of a second.
class Bench {
 public:
  explicit Bench(const DeviceSettings& settings = FloorScale()) {
    auto own = std::make_unique<FakeLine>();
    line = own.get();
    device = std::make_unique<Device>(settings, std::move(own), 1);
  }

  /// What comes over the line in `seconds`.
  std::string Run(double seconds) {
    line->sent.clear();
    for (const double end = now + seconds; now < end - 1e-9; device->Run(now)) now += 0.01;
    return line->sent;
  }
  void Tell(const std::string& bytes) { line->waiting += bytes; }

  FakeLine* line;
  std::unique_ptr<Device> device;
  double now = 0;
};

std::string Times(int count, const std::string& text) {
  std::string all;
  while (count-- > 0) all += text;
  return all;
}

TEST(SimulatedDeviceTest, ALineTooSlowForTheRateLosesWholeFrames) {
  DeviceSettings settings = FloorScale();
  settings.rate = 50;
  settings.baud = 1200;  // 120 bytes a second, 7 frames
  Bench bench(settings);
  const std::string sent = bench.Run(10);
  EXPECT_NEAR(static_cast<double>(sent.size()), 1100, 100) << "a frame waits for its turn";
  EXPECT_EQ(sent.substr(0, kFrame.size() * 50), Times(50, kFrame));
  EXPECT_GT(bench.device->Sender().FramesLeftOut(), 300);
}

TEST(SimulatedDeviceTest, ASilentDeviceNeitherSendsNorListensAndComesBack) {
  DeviceSettings settings = FloorScale();
  settings.faults.Repeat(Fault::Silence, 60, 10);
  Bench bench(settings);
  bench.Run(50);
  bench.Tell("P\rT\r");
  EXPECT_EQ(bench.Run(9.9), "");
  EXPECT_TRUE(bench.line->waiting.empty()) << "input is drained all the same";
  bench.Run(0.2);
  EXPECT_EQ(bench.Run(40), Times(400, kFrame));
}

TEST(SimulatedDeviceTest, CutAndGarbledFramesAreFollowedByGoodOnes) {
  Bench bench;
  bench.device->Faults().Start(Fault::Cut, 0, 2);
  const std::string cut = bench.Run(1.95);
  EXPECT_LT(cut.size(), 19 * kFrame.size());
  EXPECT_EQ(cut.find(kFrame), std::string::npos);
  EXPECT_NE(bench.Run(1).find(Times(8, kFrame)), std::string::npos);

  bench.device->Faults().Start(Fault::Garbage, bench.now, 2);
  const std::string garbled = bench.Run(1.9);
  EXPECT_GT(garbled.size(), 19 * kFrame.size() + 100);
  EXPECT_NE(bench.Run(1).find(Times(8, kFrame)), std::string::npos);
}

}  // namespace
