#include <gtest/gtest.h>

#include <random>

#include "platform/posix/posix_files.h"
#include "tests/tools/replay/recorded_capture.h"

namespace {

/// One channel that lives through all injuries of a capture, as a plant's does.
class InjuredLine {
 public:
  explicit InjuredLine(const RecordedCapture& recorded) : recorded_(recorded), replay_(disk_, recorded.setup) {
    for (const std::string& bytes : recorded.Arrivals()) whole_ += bytes;
    ShowGoodFrame();
    expected_ = Shown();
  }

  const std::string& Whole() const { return whole_; }

  void Receive(const std::string& bytes) {
    replay_.Tick(bytes);
    const Tables& t = replay_.Store();
    const int proto = t.ChanProtocol[replay_.Channel()];
    ASSERT_LE(t.ChanRxBuffer[replay_.Channel()].size(), static_cast<std::size_t>(t.ProtoMaxStream[proto]));
    ASSERT_EQ(t.ScanBusy, False);
  }

  /// After enough good frames to push everything else out, they are what is shown.
  void ExpectRecovery(const std::string& injury) {
    ShowGoodFrame();
    ASSERT_EQ(Shown(), expected_) << recorded_.name << ", " << injury;
  }

 private:
  void ShowGoodFrame() {
    for (int frame = 0; frame < 5; ++frame) Receive(recorded_.good);
  }
  std::string Shown() const {
    const Tables& t = replay_.Store();
    const int ch = replay_.Channel();
    return t.ChanStatusText[ch] + "|" + t.ChanGross[ch] + "|" + t.ChanTare[ch] + "|" + t.ChanNet[ch] + "|" +
           std::to_string(t.ChanStatusBits[ch]);
  }

  const RecordedCapture& recorded_;
  PosixFiles disk_;
  Replay replay_;
  std::string whole_;
  std::string expected_;
};

std::vector<RecordedCapture> CapturesWithAGoodFrame() {
  std::vector<RecordedCapture> captures;
  for (const std::string& name : CaptureNames()) {
    RecordedCapture recorded(name);
    if (!recorded.good.empty()) captures.push_back(std::move(recorded));
  }
  return captures;
}

TEST(InjuriesTest, WhateverHappensToAStreamGoodOnesAreShownBehindIt) {
  std::mt19937 random(4711);
  for (const RecordedCapture& recorded : CapturesWithAGoodFrame()) {
    InjuredLine line(recorded);
    const std::string whole = line.Whole();
    for (std::size_t at = 0; at < whole.size(); ++at) {
      line.Receive(whole.substr(0, at));
      line.Receive(whole.substr(at));
      line.ExpectRecovery("split at " + std::to_string(at));
      line.Receive(whole.substr(0, at));
      line.ExpectRecovery("cut at " + std::to_string(at));
      for (int bit = 0; bit < 8; ++bit) {
        std::string injured = whole;
        injured[at] = static_cast<char>(injured[at] ^ 1 << bit);
        line.Receive(injured);
        line.ExpectRecovery("bit " + std::to_string(bit) + " of byte " + std::to_string(at));
      }
    }
    for (int round = 0; round < 300; ++round) {
      std::string garbage(random() % 120, '\0');
      for (char& character : garbage) character = static_cast<char>(random());
      line.Receive(garbage + whole);
      line.ExpectRecovery("garbage round " + std::to_string(round));
    }
    std::string burst;
    burst.resize(10'000'000, '\r');
    line.Receive(burst);
    line.ExpectRecovery("ten megabytes of terminators");
  }
}

}  // namespace
