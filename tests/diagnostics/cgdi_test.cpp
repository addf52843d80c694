#include "diagnostics/cgdi.h"

#include <gmock/gmock.h>

#include "core/channel_state.h"
#include "tests/diagnostics/recording_canvas.h"
#include "tests/support/test_plant.h"

namespace {

class CGDITest : public testing::Test {
 protected:
  CGDITest() {
    plant.tables.ScreenWidth = 1024;
    plant.tables.ScreenPainted = True;
  }

  bool Flagged(int ch, int item) { return plant.tables.ChanDirty[item][ch] == True; }
  void FlagAndDraw(int ch, int item) {
    plant.tables.ChanDirty[item][ch] = True;
    gdi.DrawItem(ch, item);
  }

  TestPlant plant;
  RecordingCanvas canvas;
  CGDI gdi{plant.tables, canvas, plant.engine.log, plant.notice, plant.system};
};

TEST_F(CGDITest, AFlaggedCellOfAPaintedWindowIsDrawnInOneCopyOnePixelSmallerThanItself) {
  FlagAndDraw(2, Item::Gross);
  EXPECT_TRUE(Flagged(2, Item::Gross)) << "a cell flagged before the layout is set up is passed over";

  gdi.SetUp();
  plant.tables.ScreenPainted = False;
  gdi.DrawItem(2, Item::Gross);
  EXPECT_TRUE(Flagged(2, Item::Gross)) << "the window was not painted yet";

  plant.tables.ScreenPainted = True;
  gdi.DrawItem(2, Item::Gross);
  EXPECT_FALSE(Flagged(2, Item::Gross));
  gdi.DrawItem(2, Item::Gross);
  ASSERT_EQ(canvas.shown.size(), 1u) << "a cell without a flag is not drawn again";
  EXPECT_EQ(canvas.shown[0], (std::array{320, 207 + 2 * 16, 84, 11}));
  EXPECT_EQ(canvas.contextsTaken, 0) << "every context of the window is given back";
}

TEST_F(CGDITest, EachLampHasItsColour) {
  const std::vector<Colour> colours = {{0, 255, 0},   {0, 255, 0}, {255, 255, 0}, {0, 164, 255},
                                       {0, 164, 255}, {0, 255, 0}, {255, 0, 255}, {255, 32, 32}};
  gdi.SetUp();
  for (int item = Item::Rx; item <= Item::Error; ++item) {
    plant.tables.ChanIndicator[item][5] = True;
    FlagAndDraw(5, item);
    EXPECT_EQ(canvas.lamps.back().colour, colours[static_cast<std::size_t>(item)]) << item;
    EXPECT_EQ(canvas.lamps.back().edges, (std::array{1, item == Item::Error ? 0 : 1, 11, 12}));
  }
  FlagAndDraw(6, Item::Rx);
  EXPECT_EQ(canvas.lamps.size(), 8u) << "a lamp that is off shows the picture alone";
}

TEST_F(CGDITest, TextsStandWhereTheLayoutSays) {
  for (const auto& [width, rightX, y, fontHeight, fontWidth] :
       {std::array{800, 45, 2, 12, 5}, {1024, 80, -3, 16, 7}, {1280, 80, -3, 16, 7}}) {
    SCOPED_TRACE(width);
    plant.tables.ScreenWidth = static_cast<std::int16_t>(width);
    RecordingCanvas screen;
    CGDI drawing(plant.tables, screen, plant.engine.log, plant.notice, plant.system);
    drawing.SetUp();
    plant.tables.ChanDeviceDesc[0] = "Silo 1";
    plant.tables.ChanGross[0] = "   12.5";
    plant.tables.ChanTare[0] = "0.00";
    for (int item : {Item::Description, Item::Gross, Item::Tare}) {
      plant.tables.ChanDirty[item][0] = True;
      drawing.DrawItem(0, item);
    }
    using Text = RecordingCanvas::Text;
    ASSERT_EQ(screen.texts.size(), 3u);
    EXPECT_EQ(screen.texts[0], (Text{0, y, "Silo 1", Colour{0, 0, 128}, TextAlign::Left}));
    EXPECT_EQ(screen.texts[1], (Text{rightX, y, "   12.5", Colour{}, TextAlign::Right}));
    EXPECT_EQ(screen.texts[2].text, "") << "a tare of zero is blank";
    EXPECT_EQ(screen.fonts[0].family, "Arial");
    EXPECT_EQ(screen.fonts[0].height, fontHeight);
    EXPECT_EQ(screen.fonts[0].width, fontWidth);
    EXPECT_EQ(screen.fonts[0].weight, 500);
  }
}

TEST_F(CGDITest, ANewDescriptionRepaintsTheWeightItsCellReachesOver) {
  plant.tables.ScreenWidth = 800;
  gdi.SetUp();
  FlagAndDraw(0, Item::Description);
  EXPECT_TRUE(Flagged(0, Item::Gross));
  EXPECT_FALSE(Flagged(0, Item::Tare));
  FlagAndDraw(0, Item::NetWeight);
  EXPECT_FALSE(Flagged(0, Item::StatusCaption)) << "the net cell ends in front of the caption";
}

TEST_F(CGDITest, EveryObjectThatCannotBeFreedIsLoggedAndInDebugModeShownEvenIfTheLogFails) {
  plant.tables.MaxChannel = 0;
  gdi.SetUp();
  canvas.failing = true;
  gdi.Release();
  const std::string log = plant.LogText(LogType::Drawing);
  std::size_t at = 0;
  for (const char* text :
       {"Error Selecting hFramePrev(0,0: 2) to hFrameDC(0,0: ", "Error Deleting hFrame(0,0: ",
        "Error Selecting hOrigBackgroundPrev(0,0: 2) to hOrigBackgroundDC(", "Error Deleting hBackground(",
        "Error Deleting hDC(0,0: 1)", "Error Deleting hFrameDC(", "Error Deleting hOrigBackgroundDC(",
        "Error Deleting  hpen(1: ", "Error Deleting  hbr(0: ", "Error Deleting  hpen(2: ", "Error Deleting  hpen(4: ",
        "Error Deleting  hpen(5: ", "Error Deleting  hbr(3: ", "Error Deleting hArial Object"}) {
    at = log.find(text, at);
    ASSERT_NE(at, std::string::npos) << text << " is missing or comes too early";
  }
  EXPECT_TRUE(plant.notice.boxes.empty());

  plant.tables.DebugMode = True;
  plant.files.broken["/plant/" + LogFiles::FileName(LogType::Drawing)] = ErrorNumber::DiskFull;
  gdi.SetUp();
  gdi.Release();
  ASSERT_FALSE(plant.notice.boxes.empty());
  EXPECT_EQ(plant.notice.boxes.back().text, "Error Deleting hArial Object");
}

}  // namespace
