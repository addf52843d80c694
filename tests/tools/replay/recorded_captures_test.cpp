// Each capture of tests/data gives, tick by tick, the lines of its .expected.json. With TARVEX_BLESS=1 in the
// environment the files are written instead: read every changed line against the rules before you commit it.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "platform/posix/posix_files.h"
#include "tests/tools/replay/recorded_capture.h"
#include "tools/replay/json_lines.h"
#include "tools/replay/table_printer.h"

namespace {

/// Replays a capture and hands over each of its ticks.
template <typename Take>
void ReplayAll(const RecordedCapture& recorded, const Take& take) {
  PosixFiles disk;
  Replay replay(disk, recorded.setup);
  std::ifstream file(recorded.Path());
  CaptureReader capture(file, recorded.name);
  while (const auto step = capture.Next()) {
    if (const auto* writes = std::get_if<DeviceWrites>(&*step)) replay.Act(*writes);
    if (const auto* arrivals = std::get_if<OpcArrivals>(&*step)) replay.Act(*arrivals);
    if (const auto* arriving = std::get_if<ArrivingBytes>(&*step)) take(replay, replay.Tick(arriving->bytes));
  }
}

class RecordedCapturesTest : public testing::TestWithParam<std::string> {};

TEST_P(RecordedCapturesTest, IsDecodedAsExpected) {
  const RecordedCapture recorded(GetParam());
  std::vector<std::string> lines;
  ReplayAll(recorded,
            [&](const Replay& replay, const TickEvents& events) { lines.push_back(ToJson(replay, events).dump()); });
  ASSERT_FALSE(lines.empty());
  if (std::getenv("TARVEX_BLESS") != nullptr) {
    std::ofstream blessed(recorded.ExpectedPath());
    for (const std::string& line : lines) blessed << line << '\n';
    GTEST_SKIP() << "written: " << recorded.ExpectedPath();
  }
  std::ifstream expected(recorded.ExpectedPath());
  ASSERT_TRUE(expected) << "missing: " << recorded.ExpectedPath();
  std::string line;
  for (std::size_t tick = 0; tick < lines.size(); ++tick) {
    ASSERT_TRUE(std::getline(expected, line)) << "more ticks than expected lines";
    using nlohmann::json;
    EXPECT_EQ(lines[tick], line) << "line " << tick + 1
                                 << " differs: " << json::diff(json::parse(line), json::parse(lines[tick])).dump(1);
  }
  EXPECT_FALSE(std::getline(expected, line)) << "expected one more: " << line;
}

TEST(CaptureTableTest, ShowsTheTicksAsRecorded) {
  for (const std::string name : {"commands", "garbage", "offline"}) {
    std::ostringstream out;
    TablePrinter table(out);
    ReplayAll(RecordedCapture(name),
              [&](const Replay& replay, const TickEvents& events) { table.Print(replay, events); });
    table.Finish();
    EXPECT_EQ(out.str(), PosixFiles().Read(TEST_DATA_FOLDER "/" + name + ".table.txt"));
  }
}

std::string TestName(const testing::TestParamInfo<std::string>& info) {
  std::string name = info.param;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Capture, RecordedCapturesTest, testing::ValuesIn(CaptureNames()), TestName);

}  // namespace
