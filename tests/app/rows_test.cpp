#include "app/text_screen/rows.h"

#include <gtest/gtest.h>

#include "app/text_screen/row_printer.h"
#include "tests/support/test_plant.h"

namespace {

class RowsTest : public testing::Test {
 protected:
  void Put(int ch, bool enabled, std::string_view caption) {
    plant.tables.ChanEnabled[ch] = AsBoolean(enabled);
    plant.tables.ChanConnected[ch] = AsBoolean(enabled);
    plant.tables.ChanStatusText[ch] = caption;
  }

  TestPlant plant;
};

TEST_F(RowsTest, ARowIsShownForEachChannelThatIsEnabledOrHasFailed) {
  Put(0, true, Caption::Online);
  Put(1, false, Caption::DeviceDisabled);
  Put(2, false, Caption::InitializationError);  // given up by the system
  Put(31, true, Caption::Ready);
  EXPECT_EQ(ShownChannels(plant.tables, false).to_ullong(), (1ULL << 0) | (1ULL << 2) | (1ULL << 31));
  EXPECT_EQ(ShownChannels(plant.tables, true).count(), 32U);
  plant.tables.MaxChannel = 7;
  EXPECT_EQ(ShownChannels(plant.tables, true).count(), 8U);
}

TEST_F(RowsTest, AChannelIsOnlineWhileItsDeviceIsHeard) {
  Put(0, true, Caption::Online);
  Put(1, true, "OUT OF RANGE");  // a device that tells of a fault is heard
  plant.tables.ChanIndicator[Item::Error][1] = True;
  Put(2, true, Caption::Offline);
  plant.tables.ChanStatusBits[2] = StatusBit::Offline;
  Put(3, true, Caption::Ready);  // no stream yet
  Put(4, false, Caption::InitializationError);
  Put(5, true, Caption::Ready);  // a database channel has no streams
  for (int ch = 0; ch < 5; ++ch) plant.tables.ChanProtocol[ch] = 2;
  const ChannelCount count = CountChannels(plant.tables);
  EXPECT_EQ(count.online, 3);
  EXPECT_EQ(count.enabled, 6);
}

TEST_F(RowsTest, EveryStreamHandledIsCounted) {
  plant.Connect(0, 5);
  plant.Connect(7, 5);
  plant.tables.ProtoTerminator[5] = '\r';
  plant.Tick(0, "12\r");
  plant.Tick(7, "12\r");
  plant.Tick(7, "no terminator");
  EXPECT_EQ(plant.tables.StreamsDecoded, 2);
}

TEST(RowWindowTest, ScrollingStopsAtBothEndsAndAGrownTerminalLeavesNoGap) {
  RowWindow window;
  window.Fit(32, 19);
  window.Move(-1);
  EXPECT_EQ(window.First(), 0);
  window.Move(100);
  EXPECT_EQ(window.First(), 13);
  EXPECT_EQ(window.End(), 32);
  window.Fit(32, 30);
  EXPECT_EQ(window.First(), 2);
  window.Fit(5, 30);
  EXPECT_EQ(window.First(), 0);
  EXPECT_EQ(window.End(), 5);
  window.Fit(5, -2);  // a terminal of one line
  EXPECT_EQ(window.Height(), 0);
}

TEST(StreamRateTest, TheRateIsTakenOverTheSecondsThatHavePassed) {
  struct Step {
    std::int64_t streams;
    std::int64_t second;
    bool isNew;
    std::int64_t rate;
  };
  const Step steps[] = {
      {0, 1000, true, 0},     {100, 1000, false, 0}, {240, 1001, true, 240},
      {720, 1003, true, 240}, {960, 500, true, 0},  // the clock was put back
      {1200, 501, true, 240},
  };
  StreamRate rate;
  for (const Step& step : steps) {
    EXPECT_EQ(rate.Update(step.streams, step.second), step.isNew) << step.second;
    EXPECT_EQ(rate.PerSecond(), step.rate) << step.second;
  }
}

TEST_F(RowsTest, PlainRowsComeOnceASecondWithAlignedCells) {
  Put(4, true, Caption::Online);
  plant.tables.ChanDeviceDesc[4] = "Truck scale";
  plant.tables.ChanGross[4] = "   16.50";
  plant.tables.ChanTare[4] = "4.00";
  plant.tables.ChanNet[4] = "12.50";
  plant.tables.ChanIndicator[Item::Net][4] = True;
  plant.tables.ChanProtocol[4] = 2;
  RowPrinter printer(plant.tables, plant.system);
  EXPECT_EQ(printer.Lines(),
            "2026-01-02 03:04:05  1 of 1 online   0 streams/s\n"
            "5   ...N....  Truck scale                    16.50        4.00       12.50  Online...\n");
  EXPECT_EQ(printer.Lines(), "");
  ++plant.system.second;
  EXPECT_NE(printer.Lines(), "");
}

}  // namespace
