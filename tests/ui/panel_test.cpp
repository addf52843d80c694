#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QTest>

#include "core/channel_state.h"
#include "diagnostics/screen_layout.h"
#include "tests/ui/panel_plant.h"
#include "ui/background.h"
#include "ui/qt_canvas.h"

namespace {

/// The weigh screen's cells on Qt's canvas, without a window.
class DrawnCells {
 public:
  explicit DrawnCells(int width, qreal scale = 1) {
    plant.tables.ScreenWidth = static_cast<std::int16_t>(width);
    plant.tables.ScreenPainted = True;
    picture = DrawBackground(LayoutFor(width), scale);
    canvas.SetPicture(picture, scale);
    cells.SetUp();
  }

  const QImage& DrawAll() {
    ForceRepaint(plant.tables);
    for (int ch = 0; ch < kChannels; ++ch) {
      for (int item = 0; item < Item::Count; ++item) cells.DrawItem(ch, item);
    }
    return canvas.WindowImage();
  }

  TestPlant plant;
  QImage picture;
  QtCanvas canvas{[](const QRect&) {}};
  CGDI cells{plant.tables, canvas, plant.engine.log, plant.notice, plant.system};
};

QRect RectOf(const CellPlace& place) { return {place.x, place.y, place.width - 1, place.height - 1}; }

/// Part of the picture where it differs from the other one; empty if nowhere.
QRect Difference(const QImage& one, const QImage& other) {
  QRect changed;
  for (int y = 0; y < one.height(); ++y) {
    for (int x = 0; x < one.width(); ++x) {
      if (one.pixel(x, y) != other.pixel(x, y)) changed |= QRect(x, y, 1, 1);
    }
  }
  return changed;
}

TEST(DrawnCellsTest, EmptyCellsLeaveThePictureAsItIsAtEveryScaleFactor) {
  for (int width : {800, 1024}) {
    for (qreal scale : {1.0, 1.25, 1.5, 2.0}) {
      DrawnCells drawn(width, scale);
      EXPECT_EQ(Difference(drawn.DrawAll(), drawn.picture), QRect()) << width << " at " << scale;
    }
  }
}

TEST(DrawnCellsTest, NoTextLeavesItsCell) {
  const std::string texts[] = {std::string(5000, 'W'), "\xC4\xD6\xDC \xFF\xFE", "\x01\x02\n\r\t\x1B[31m",
                               "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D \xE2\x80\xAE"
                               "12.5"};
  for (int width : {800, 1024}) {
    for (const std::string& text : texts) {
      for (auto [table, item] : {std::pair{&Tables::ChanDeviceDesc, Item::Description},
                                 {&Tables::ChanGross, Item::Gross},
                                 {&Tables::ChanStatusText, Item::StatusCaption}}) {
        DrawnCells drawn(width);
        (drawn.plant.tables.*table)[5] = text;
        const QRect changed = Difference(drawn.DrawAll(), drawn.picture);
        const QRect cell = RectOf(PlaceOf(LayoutFor(width), 5, item));
        EXPECT_FALSE(changed.isEmpty()) << width << ' ' << item;
        EXPECT_TRUE(cell.contains(changed)) << width << ' ' << item << ' ' << text.substr(0, 20);
      }
    }
  }
}

TEST(DrawnCellsTest, AWeightTooLongForItsCellIsDrawnNarrowerAndNotCut) {
  const auto pictureOf = [](const char* weight) {
    DrawnCells drawn(800);
    drawn.plant.tables.ChanGross[0] = weight;
    return drawn.DrawAll().copy();
  };
  EXPECT_NE(pictureOf("-9999999999"), pictureOf("9999999999")) << "the sign must be seen";
  EXPECT_NE(pictureOf("99999999991"), pictureOf("99999999999")) << "and the last digit";
}

TEST(PanelWindowTest, TheCopyOfACellDoesNotFlagTheOthers) {
  PanelPlant plant;
  plant.Launch();
  plant.Connect(0);
  for (int tick = 0; tick < 3; ++tick) plant.Tick(0, "  1250\n");
  for (int ch = 0; ch < kChannels; ++ch) {
    for (int item = 0; item < Item::Count; ++item)
      EXPECT_EQ(plant.tables.ChanDirty[item][ch], False) << ch << ' ' << item;
  }
  plant.panel.findChild<QWidget*>()->update();
  EXPECT_TRUE(WaitFor([&] { return plant.tables.ChanDirty[Item::Gross][31] == True; })) << "a repaint flags every cell";
}

TEST(PanelWindowTest, ClosingTheWindowIsTheEndButtonAlsoInATickAndHeldWhileADialogIsOpen) {
  PanelPlant plant;
  plant.Connect(0);
  plant.Launch();
  plant.dialogs.cmdRefresh(&plant.panel);
  plant.panel.close();
  EXPECT_TRUE(plant.panel.isVisible());
  plant.dialogs.Close();

  plant.plant.events.onDoEvents = [&] { plant.panel.close(); };
  plant.Tick(0, "  1250\n");
  EXPECT_FALSE(plant.panel.isVisible());
  EXPECT_TRUE(plant.startupForm.isVisible());
  EXPECT_FALSE(plant.plant.events.timer1.enabled);
  EXPECT_EQ(plant.tables.ScanBusy, False) << "the tick that was interrupted has ended";
  EXPECT_TRUE(plant.plant.notice.boxes.empty());
}

}  // namespace
