#include <gmock/gmock.h>

#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSlider>
#include <QTimer>

#include "platform/qt/message_boxes.h"
#include "tests/support/test_plant.h"
#include "tests/ui/virtual_desktop.h"
#include "tests/ui/wait_for.h"
#include "ui/dialogs.h"
#include "ui/value_label.h"

namespace {

/// A main window, the small windows over it, and an operator with keyboard and mouse.
class DialogsOnADesktopTest : public testing::Test {
 protected:
  static constexpr int kCh = 4;

  DialogsOnADesktopTest() {
    dialogs.Use(plant.engine);
    plant.dialogs.onDetail = [this](int element, std::string_view text) { dialogs.ShowDetail(element, text); };
    plant.Connect(kCh, 10);
    plant.tables.ProtoGrossEnable[10] = True;
    plant.tables.ProtoGrossPos[10] = 1;
    plant.tables.ProtoGrossLen[10] = 6;
    mainWindow.setWindowFlags(Qt::FramelessWindowHint);
    mainWindow.resize(1024, 768);
    mainWindow.show();
  }

  static QWidget* ActiveWindow(const QString& name) {
    QWidget* active = nullptr;
    WaitFor([&] {
      active = QApplication::activeWindow();
      return active && active->objectName() == name;
    });
    return active && active->objectName() == name ? active : nullptr;
  }

  template <typename Control>
  static Control& Find(QWidget* window, const QString& name) {
    Control* control = window ? window->findChild<Control*>(name) : nullptr;
    if (!control) throw std::runtime_error("no " + name.toStdString());
    return *control;
  }

  VirtualDesktop& desktop = VirtualDesktop::Instance();
  TestPlant plant;
  QWidget mainWindow;
  Dialogs dialogs;
};

int BrightPixels(QWidget& widget) {
  const QImage picture = widget.grab().toImage();
  int bright = 0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) bright += qGray(picture.pixel(x, y)) > 200 ? 1 : 0;
  }
  return bright;
}

TEST_F(DialogsOnADesktopTest, TheDetailComesUpOverTheMainWindowDrawsTheNextWeightAndGoesWithEscape) {
  dialogs.cmdDetail(kCh, &mainWindow);
  QWidget* detail = ActiveWindow("frmDetail");
  auto& gross = Find<ValueLabel>(detail, "Ld(0)");
  EXPECT_TRUE(mainWindow.frameGeometry().contains(detail->frameGeometry()));
  EXPECT_EQ(BrightPixels(gross), 0);
  plant.Tick(kCh, "  1250\n");
  EXPECT_GT(BrightPixels(gross), 100);
  desktop.Input("key Escape");
  EXPECT_TRUE(WaitFor([&] { return !dialogs.IsOpen() && !detail->isVisible(); }));
}

TEST_F(DialogsOnADesktopTest, TheCloseBoxOfTheWindowManagerIsAsGoodAsTheButton) {
  dialogs.cmdDetail(kCh, &mainWindow);
  ASSERT_TRUE(ActiveWindow("frmDetail"));
  desktop.Input("key alt+F4");
  EXPECT_TRUE(WaitFor([&] { return plant.tables.ChanDetailOpen[kCh] == False; }));
  EXPECT_FALSE(dialogs.IsOpen());
}

TEST_F(DialogsOnADesktopTest, TheRatesAreChangedWithTheMouse) {
  dialogs.cmdRefresh(&mainWindow);
  QWidget* refresh = ActiveWindow("frmRefresh");
  auto& slider = Find<QSlider>(refresh, "Slider1");
  desktop.Click(slider, 0.95);
  ASSERT_TRUE(WaitFor([&] { return slider.value() == 2; }));
  desktop.Click(Find<QPushButton>(refresh, "cmdUpdate"));
  EXPECT_TRUE(WaitFor([&] { return plant.events.timer1.interval == 50; }));
  desktop.Click(Find<QPushButton>(refresh, "cmdSimpleClose"));
  EXPECT_TRUE(WaitFor([&] { return plant.tables.RefreshOpen == False; }));
}

TEST_F(DialogsOnADesktopTest, TheRatesAreChangedWithTheKeyboardAlone) {
  dialogs.cmdRefresh(&mainWindow);
  QWidget* refresh = ActiveWindow("frmRefresh");
  desktop.Input("key alt+a");
  auto& box = Find<QLineEdit>(refresh, "tVal(0)");
  ASSERT_TRUE(WaitFor([&] { return box.hasFocus(); }));
  desktop.Input("key ctrl+a type 33");
  ASSERT_TRUE(WaitFor([&] { return box.text() == "33"; }));
  desktop.Input("key Return");
  EXPECT_TRUE(WaitFor([&] { return plant.tables.Timer1Interval == 33; }));
  EXPECT_TRUE(dialogs.IsOpen());
  desktop.Input("key alt+c");
  EXPECT_TRUE(WaitFor([&] { return !dialogs.IsOpen(); }));
}

TEST_F(DialogsOnADesktopTest, ABoxStandsOverADetailAndLetsNothingElseBeClickedUntilItIsDismissed) {
  dialogs.cmdDetail(kCh, &mainWindow);
  QWidget* detail = ActiveWindow("frmDetail");
  MessageBoxes boxes;
  bool stillOpen = false;
  QTimer::singleShot(0, [&] {
    WaitFor([] { return qobject_cast<QMessageBox*>(QApplication::activeWindow()) != nullptr; });
    desktop.Click(Find<QPushButton>(detail, "cmdClose"));
    stillOpen = dialogs.IsOpen();
    desktop.Input("key Return");
  });
  boxes.Show("Tarvex Scan System Error", "Critical Error: 57  weights.log");
  EXPECT_TRUE(stillOpen);
  EXPECT_TRUE(ActiveWindow("frmDetail")) << "the keyboard comes back";
}

}  // namespace
