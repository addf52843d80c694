#include "tools/sim/device.h"

#include <gtest/gtest.h>

#include <cmath>
#include <system_error>

using namespace sim;

namespace {

/// A wire whose far end is the test.
struct FakeLine : Line {
  bool plugged = false;
  bool listened = true;
  bool refusePlug = false;
  std::size_t room = 1'000'000;  ///< bytes that it takes until the test reads
  std::string sent;
  std::string waiting;

  void Plug() override {
    if (refusePlug) throw std::system_error(EADDRINUSE, std::generic_category(), "no");
    plugged = true;
  }
  void Pull() override { plugged = false; }
  bool Plugged() const override { return plugged; }
  std::string Address() const override { return "/fake"; }
  int Watched() const override { return -1; }
  void Notice(short) override {}
  bool Listened() const override { return plugged && listened; }
  std::string Receive() override { return std::exchange(waiting, {}); }
  std::size_t Send(std::string_view bytes) override {
    const std::size_t taken = std::min(room, bytes.size());
    sent += bytes.substr(0, taken);
    room -= taken;
    return taken;
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

TEST(SimulatedDeviceTest, FramesComeAtTheRateOfTheDevice) {
  EXPECT_EQ(Bench().Run(2), Times(20, kFrame));
  DeviceSettings fast = FloorScale();
  fast.rate = 50;
  EXPECT_EQ(Bench(fast).Run(2).size(), 100 * kFrame.size());
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

TEST(SimulatedDeviceTest, AFullLineLosesWholeFramesAndEndsTheOneThatItHasBegun) {
  Bench bench;
  bench.line->room = kFrame.size() + 5;
  EXPECT_EQ(bench.Run(2), kFrame + kFrame.substr(0, 5));
  bench.line->room = 1'000'000;
  const std::string sent = bench.Run(1);
  EXPECT_EQ(sent.substr(0, 29), kFrame.substr(5) + kFrame);
}

TEST(SimulatedDeviceTest, NothingIsSentWhileNobodyListensAndAReaderStartsWithAWholeFrame) {
  DeviceSettings settings = FloorScale();
  settings.baud = 300;
  Bench bench(settings);
  bench.Run(0.3);
  bench.line->listened = false;
  EXPECT_EQ(bench.Run(5), "");
  bench.line->listened = true;
  EXPECT_EQ(bench.Run(2).substr(0, kFrame.size()), kFrame);
}

TEST(SimulatedDeviceTest, CommandsShowInTheNextFramesAndPrintMarksOne) {
  Bench bench;
  bench.Run(0.5);
  bench.Tell("T\r");
  EXPECT_NE(bench.Run(0.2).find("\x2B\x21\x20"
                                "000000002500\r"),
            std::string::npos);
  bench.Tell("C\rX\rK12.5A\r");
  EXPECT_NE(bench.Run(0.2).find("002375000125\r"), std::string::npos);
  bench.Tell("P\r");
  const std::string sent = bench.Run(1);
  const auto mark = sent.find(
      "\x28"
      "002375");
  EXPECT_NE(mark, std::string::npos);
  EXPECT_EQ(sent.find("\x28"
                      "002375",
                      mark + 1),
            std::string::npos);
}

TEST(SimulatedDeviceTest, ADeviceOnRequestSendsAFrameForEachRequestAlone) {
  DeviceSettings settings = FloorScale();
  settings.onRequest = true;
  Bench bench(settings);
  EXPECT_EQ(bench.Run(3), "");
  bench.Tell("W\r");
  EXPECT_EQ(bench.Run(3), kFrame);
  std::string marked = kFrame;
  marked[3] = '\x28';
  bench.Tell("P\r");
  EXPECT_EQ(bench.Run(3), marked);
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

TEST(SimulatedDeviceTest, ASplitFrameComesInPiecesAndWhole) {
  Bench bench;
  bench.device->Faults().Start(Fault::Split, 0, 10);
  int pieces = 0;
  std::string sent;
  for (int step = 0; step < 500; ++step) {
    const std::string piece = bench.Run(0.01);
    EXPECT_LE(piece.size(), 4U);
    pieces += !piece.empty();
    sent += piece;
  }
  EXPECT_GT(pieces, 50);
  EXPECT_EQ(sent.substr(0, 10 * kFrame.size()), Times(10, kFrame));
}

TEST(SimulatedDeviceTest, TheScaleLivesOnWhileItsCableIsOut) {
  DeviceSettings settings = FloorScale();
  settings.scale.load = {{250, 10}, {100, 1000}};
  Bench bench(settings);
  bench.device->Faults().Start(Fault::Unplug, 0, 20);
  EXPECT_EQ(bench.Run(19.9), "");
  EXPECT_FALSE(bench.line->plugged);
  EXPECT_NE(bench.Run(1).find("001000000000\r"), std::string::npos);
}

TEST(SimulatedDeviceTest, ALineThatCannotBePluggedBackIsTriedAgainOnceASecond) {
  Bench bench;
  bench.device->Faults().Start(Fault::Unplug, 0, 5);
  bench.Run(4);
  bench.line->refusePlug = true;
  EXPECT_EQ(bench.Run(5), "");
  EXPECT_NE(bench.device->Trouble(), "");
  bench.line->refusePlug = false;
  bench.Run(1.1);
  EXPECT_EQ(bench.device->Trouble(), "");
  EXPECT_EQ(bench.Run(1), Times(10, kFrame));
}

TEST(SimulatedDeviceTest, AfterASleepOfTheMachineNoOldFramesAreSent) {
  Bench bench;
  bench.Run(1);
  bench.line->sent.clear();
  bench.device->Run(bench.now += 3600);
  EXPECT_EQ(bench.line->sent, kFrame);
}

}  // namespace
