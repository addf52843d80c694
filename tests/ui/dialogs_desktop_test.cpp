#include <gmock/gmock.h>

#include <QLineEdit>
#include <QPushButton>

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

TEST_F(DialogsOnADesktopTest, TheDetailComesUpOverTheMainWindowDrawsTheNextWeightAndGoesWithTheCloseBox) {
  dialogs.cmdDetail(kCh, &mainWindow);
  QWidget* detail = ActiveWindow("frmDetail");
  auto& gross = Find<ValueLabel>(detail, "Ld(0)");
  EXPECT_TRUE(mainWindow.frameGeometry().contains(detail->frameGeometry()));
  EXPECT_EQ(BrightPixels(gross), 0);
  plant.Tick(kCh, "  1250\n");
  EXPECT_GT(BrightPixels(gross), 100);
  desktop.Input("key alt+F4");
  EXPECT_TRUE(WaitFor([&] { return !dialogs.IsOpen() && !detail->isVisible(); }));
}

TEST_F(DialogsOnADesktopTest, TheRatesAreChangedWithTheKeyboardAndTheMouse) {
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
  desktop.Click(Find<QPushButton>(refresh, "cmdClose"));
  EXPECT_TRUE(WaitFor([&] { return !dialogs.IsOpen() && plant.tables.RefreshOpen == False; }));
}

}  // namespace
