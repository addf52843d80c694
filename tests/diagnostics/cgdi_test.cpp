#include "diagnostics/cgdi.h"

#include <gmock/gmock.h>

#include "core/channel_state.h"
#include "tests/diagnostics/recording_canvas.h"
#include "tests/support/test_plant.h"

namespace {

using testing::HasSubstr;

class CGDITest : public testing::Test {
 protected:
  CGDITest() {
    plant.tables.ScreenWidth = 1024;
    plant.tables.ScreenPainted = True;
  }

  bool Flagged(int ch, int item) { return plant.tables.ChanDirty[item][ch] == True; }
  void Flag(int ch, int item) { plant.tables.ChanDirty[item][ch] = True; }
  void FlagAndDraw(int ch, int item) {
    Flag(ch, item);
    gdi.DrawItem(ch, item);
  }
  void FlagAndDrawCaption(int times) {
    for (int i = 0; i < times; ++i) FlagAndDraw(0, Item::StatusCaption);
  }

  TestPlant plant;
  RecordingCanvas canvas;
  CGDI gdi{plant.tables, canvas, plant.engine.log, plant.notice, plant.system};
};

TEST_F(CGDITest, WithoutDrawingNothingIsMadeAndFlagsStay) {
  plant.tables.GdiEnabled = False;
  ForceRepaint(plant.tables);
  gdi.SetUp();
  gdi.DrawItem(0, Item::Gross);
  gdi.Release();
  EXPECT_TRUE(canvas.alive.empty());
  EXPECT_TRUE(canvas.freed.empty());
  EXPECT_TRUE(Flagged(0, Item::Gross));
}

TEST_F(CGDITest, ACellIsDrawnOnlyWhenItIsMadePaintedAndFlagged) {
  FlagAndDraw(0, Item::Gross);
  EXPECT_TRUE(Flagged(0, Item::Gross)) << "a cell flagged before the layout is set up is passed over";

  gdi.SetUp();
  plant.tables.ScreenPainted = False;
  gdi.DrawItem(0, Item::Gross);
  EXPECT_TRUE(Flagged(0, Item::Gross)) << "the window was not painted yet";

  plant.tables.ScreenPainted = True;
  gdi.DrawItem(0, Item::Gross);
  EXPECT_FALSE(Flagged(0, Item::Gross));
  gdi.DrawItem(0, Item::Gross);
  EXPECT_EQ(canvas.shown.size(), 1u) << "a cell without a flag is not drawn again";
}

TEST_F(CGDITest, ACellGoesToTheWindowInOneCopyOnePixelSmallerThanItself) {
  gdi.SetUp();
  FlagAndDraw(2, Item::Gross);
  ASSERT_EQ(canvas.shown.size(), 1u);
  EXPECT_EQ(canvas.shown[0].x, 320);
  EXPECT_EQ(canvas.shown[0].y, 207 + 2 * 16);
  EXPECT_EQ(canvas.shown[0].width, 84);
  EXPECT_EQ(canvas.shown[0].height, 11);
  EXPECT_EQ(canvas.contextsTaken, 0) << "every context of the window is given back";
}

TEST_F(CGDITest, EachLampHasItsColour) {
  const std::vector<Colour> colours = {{0, 255, 0},   {0, 255, 0}, {255, 255, 0}, {0, 164, 255},
                                       {0, 164, 255}, {0, 255, 0}, {255, 0, 255}, {255, 32, 32}};
  gdi.SetUp();
  for (int item = Item::Rx; item <= Item::Error; ++item) {
    plant.tables.ChanIndicator[item][5] = True;
    FlagAndDraw(5, item);
    const RecordingCanvas::Lamp& lamp = canvas.lamps.back();
    EXPECT_EQ(lamp.colour, colours[static_cast<std::size_t>(item)]) << item;
    EXPECT_EQ(lamp.left, 1);
    EXPECT_EQ(lamp.top, item == Item::Error ? 0 : 1);
    EXPECT_EQ(lamp.right, 11);
    EXPECT_EQ(lamp.bottom, 12);
  }
  FlagAndDraw(6, Item::Rx);
  EXPECT_EQ(canvas.lamps.size(), 8u) << "a lamp that is off shows the picture alone";
}

TEST_F(CGDITest, TextsStandWhereTheLayoutSays) {
  struct Case {
    int width, rightX, y, fontHeight, fontWidth;
  };
  for (const Case& c : {Case{800, 45, 2, 12, 5}, Case{1024, 80, -3, 16, 7}, Case{1280, 80, -3, 16, 7}}) {
    SCOPED_TRACE(c.width);
    plant.tables.ScreenWidth = static_cast<std::int16_t>(c.width);
    RecordingCanvas screen;
    CGDI drawing(plant.tables, screen, plant.engine.log, plant.notice, plant.system);
    drawing.SetUp();
    plant.tables.ChanDeviceDesc[0] = "Silo 1";
    plant.tables.ChanGross[0] = "   12.5";
    for (int item : {Item::Description, Item::Gross}) {
      Flag(0, item);
      drawing.DrawItem(0, item);
    }
    ASSERT_EQ(screen.texts.size(), 2u);
    EXPECT_EQ(screen.texts[0].x, 0);
    EXPECT_EQ(screen.texts[0].colour, (Colour{0, 0, 128}));
    EXPECT_EQ(screen.texts[0].align, TextAlign::Left);
    EXPECT_EQ(screen.texts[1].text, "   12.5");
    EXPECT_EQ(screen.texts[1].x, c.rightX);
    EXPECT_EQ(screen.texts[1].y, c.y);
    EXPECT_EQ(screen.texts[1].align, TextAlign::Right);
    ASSERT_EQ(screen.fonts.size(), 1u);
    EXPECT_EQ(screen.fonts[0].family, "Arial");
    EXPECT_EQ(screen.fonts[0].height, c.fontHeight);
    EXPECT_EQ(screen.fonts[0].width, c.fontWidth);
    EXPECT_EQ(screen.fonts[0].weight, 500);
  }
}

TEST_F(CGDITest, ATareWithoutANumberOtherThanZeroIsBlank) {
  gdi.SetUp();
  for (auto [tare, shown] : {std::pair{"0.00", ""}, {"abc", ""}, {"", ""}, {" -0", ""}, {" 0.50", " 0.50"}}) {
    plant.tables.ChanTare[0] = tare;
    FlagAndDraw(0, Item::Tare);
    EXPECT_EQ(canvas.texts.back().text, shown) << tare;
  }
  plant.tables.ChanGross[0] = "0.00";
  FlagAndDraw(0, Item::Gross);
  EXPECT_EQ(canvas.texts.back().text, "0.00") << "a gross weight of zero is shown";
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

TEST_F(CGDITest, InDebugModeTheCaptionShowsTheRepaintsOfTheLastSecond) {
  plant.tables.DebugMode = True;
  plant.tables.ChanStatusText[0] = "Online...";
  gdi.SetUp();
  FlagAndDrawCaption(1);
  EXPECT_EQ(canvas.texts.back().text, "000000");
  FlagAndDrawCaption(12);
  EXPECT_EQ(canvas.texts.back().text, "000000") << "within the second the kept text stays";
  ++plant.system.second;
  FlagAndDrawCaption(1);
  EXPECT_EQ(canvas.texts.back().text, "000012");
  FlagAndDrawCaption(32003);
  ++plant.system.second;
  FlagAndDrawCaption(1);
  EXPECT_EQ(canvas.texts.back().text, "000002") << "above 32000 the count starts again at 0";
}

TEST_F(CGDITest, SetUpAgainKeepsTheCellsThatAreThere) {
  gdi.SetUp();
  const std::size_t held = canvas.alive.size();
  gdi.SetUp();
  EXPECT_EQ(canvas.alive.size(), held);
}

TEST_F(CGDITest, RoundsOfSettingUpAndReleasingLeaveNothing) {
  plant.tables.MaxChannel = 1;
  for (int round = 0; round < 3; ++round) {
    gdi.SetUp();
    FlagAndDraw(1, Item::Gross);
    plant.tables.ChanIndicator[Item::Rx][1] = True;
    FlagAndDraw(1, Item::Rx);
    gdi.Release();
    ASSERT_TRUE(canvas.alive.empty()) << "round " << round;
  }
  EXPECT_EQ(plant.LogText(LogType::Drawing), "");
}

TEST_F(CGDITest, EveryObjectThatCannotBeFreedIsLogged) {
  plant.tables.MaxChannel = 0;
  gdi.SetUp();
  FlagAndDraw(0, Item::Rx);
  canvas.failing = true;
  gdi.Release();
  const std::string log = plant.LogText(LogType::Drawing);
  for (const char* text :
       {"Error Selecting hFramePrev(0,0: 2) to hFrameDC(0,0: ", "Error Deleting hFrame(0,0: ", ") Object",
        "Error Selecting hOrigBackgroundPrev(0,0: 2) to hOrigBackgroundDC(", "Error Deleting hOrigBackground(",
        "Error Selecting hBackgroundPrev(0,0: 2) to hBackgroundDC(", "Error Deleting hBackground(",
        "Error Deleting hDC(0,0: 1)", "Error Deleting hDisplayDC(0,0: 1)",
        "Error Deleting hFrameDC(0,12: ", "Error Deleting hBackgroundDC(", "Error Deleting hOrigBackgroundDC(",
        "Error Deleting  hpen(3: ", "Error Deleting  hbr(0: ", "Error Deleting hArial Object"}) {
    EXPECT_THAT(log, HasSubstr(text));
  }
  EXPECT_TRUE(plant.notice.boxes.empty());
}

TEST_F(CGDITest, FailuresAreAlsoShownInDebugModeAndALogThatFailsStopsNothing) {
  plant.tables.MaxChannel = 0;
  plant.tables.DebugMode = True;
  gdi.SetUp();
  canvas.failing = true;
  plant.files.broken["/plant/" + LogFiles::FileName(LogType::Drawing)] = ErrorNumber::DiskFull;
  gdi.Release();
  ASSERT_FALSE(plant.notice.boxes.empty());
  EXPECT_THAT(plant.notice.boxes.front().text, HasSubstr("Error Selecting hFramePrev(0,0: "));
  EXPECT_EQ(plant.notice.boxes.back().text, "Error Deleting hArial Object");
}

}  // namespace
