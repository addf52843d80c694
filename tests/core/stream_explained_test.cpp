#include "core/stream_explained.h"

#include <gtest/gtest.h>

#include <fstream>
#include <random>

#include "config/format_file.h"
#include "core/fixed_tables.h"
#include "core/framing.h"
#include "core/tables.h"
#include "tests/support/test_plant.h"

namespace {

constexpr int kCh = 2;
constexpr int kStandard = 2;

std::string Frame(char a, char b, const std::string& digits, const std::string& tare) {
  return std::string("\x02") + a + b + " " + digits + tare + "\r";
}

/// What is explained of a stream is what reception makes of it: weights, mode, units and faults.
TEST(StreamExplainedTest, AgreesWithReceptionOnStreamsOfTheShippedFormat) {
  TestPlant plant;
  Tables& t = plant.tables;
  plant.files.content["/plant/Tarvex-Std-OVStdFmt.Cfg"] = [] {
    std::ifstream file(std::string(FORMATS_FOLDER) + "/Tarvex-Std-OVStdFmt.Cfg", std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
  }();
  plant.Connect(kCh, kStandard);
  LoadFormatFile(t, plant.files, plant.engine.log, kStandard);
  auto scratch = std::make_unique<Tables>();
  FillFixedTables(*scratch);
  scratch->ProgramFolder = t.ProgramFolder;
  LoadFormatFile(*scratch, plant.files, plant.engine.log, kStandard);
  scratch->ChanProtocol[kCh] = kStandard;

  std::mt19937 random(7);
  for (int stream = 0; stream < 400; ++stream) {
    const auto digits = [&] { return std::to_string(100000 + random() % 900000).substr(0, stream % 50 == 0 ? 5 : 6); };
    const std::string frame =
        Frame(static_cast<char>(0x20 + random() % 32), static_cast<char>(0x20 + random() % 32), digits(), digits());
    plant.Tick(kCh, frame);
    scratch->ChanRxChunk[kCh] = frame;
    ASSERT_NE(CutStream(*scratch, kCh), Cut::None);
    const ExplainedStream explained = ExplainStream(*scratch, kCh);
    const auto& [gross, tare, net, id] = explained.fields;
    if (!explained.error.empty()) {
      EXPECT_EQ(t.ChanStatusText[kCh], explained.error);
      continue;
    }
    const bool failed = !gross.fault.empty() || !tare.fault.empty() || !net.fault.empty();
    if (failed) {
      EXPECT_EQ(t.ChanGross[kCh] + t.ChanNet[kCh], "");
    } else if (explained.mode == "NET") {
      EXPECT_EQ(t.ChanNet[kCh], net.value) << stream;
      EXPECT_EQ(t.ChanTare[kCh], tare.value) << stream;
      EXPECT_EQ(t.ChanGross[kCh], gross.value) << stream;
    } else {
      EXPECT_EQ(t.ChanGross[kCh], gross.value) << stream;
      EXPECT_FALSE(net.taken);
    }
  }
}

TEST(StreamExplainedTest, ARowTellsWhatItFoundAndWhatItLooksFor) {
  StatusTable table;
  const auto set = [&](int row, const std::vector<std::string>& cells) {
    for (int column = 0; column < 6; ++column) table.SetCell(row, column, cells[static_cast<std::size_t>(column)]);
  };
  set(0, {"Motion", "1 / MOTION", "2b3", "1b1", "8", "X"});
  set(1, {"Net Mode", "2 / MODE", "3", "2", "NT", "X"});
  set(2, {"Net Mode", "2 / MODE", "3", "2", "NT", ""});
  ExplainedRow row = ExplainRow(table, 0, "a(GR..");
  EXPECT_TRUE(row.matched);
  EXPECT_EQ(row.found + " " + row.expected, "8 8");
  row = ExplainRow(table, 1, "a(GR..");
  EXPECT_FALSE(row.matched);
  EXPECT_EQ(row.found + " " + row.expected, "GR NT");
  EXPECT_EQ(row.last, 4);
  EXPECT_FALSE(ExplainRow(table, 1, "a(NT").longEnough) << "one character more is asked for";
  EXPECT_FALSE(ExplainRow(table, 2, "a(NT..").enabled);
}

}  // namespace
