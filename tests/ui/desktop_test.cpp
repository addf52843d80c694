#include <gmock/gmock.h>

#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QSlider>
#include <QTimer>

#include "diagnostics/screen_layout.h"
#include "platform/qt/message_boxes.h"
#include "tests/ui/panel_plant.h"
#include "tests/ui/virtual_desktop.h"
#include "ui/value_label.h"

namespace {

using testing::HasSubstr;
using testing::Not;

/// An operator in front of the panel, with keyboard and mouse.
class DesktopTest : public testing::Test {
 protected:
  static constexpr int kCh = 3;

  void SetUp() override {
    desktop.ShowTray(true);
    plant.Connect(kCh);
    plant.Launch();
    ASSERT_TRUE(WaitFor([&] { return plant.panel.isActiveWindow(); }));
  }

  bool PanelIsBack() {
    return WaitFor([&] { return plant.panel.isActiveWindow() && plant.tables.Minimized == False; });
  }
  std::string Activity() { return plant.plant.LogText(LogType::Activity); }

  static QRect Cell(int ch, int item) {
    const CellPlace place = PlaceOf(LayoutFor(1024), ch, item);
    return {place.x, place.y, place.width - 1, place.height - 1};
  }
  /// Pixels of a place on the display that are dark as the ink of a weight.
  static int Ink(const QRect& place) {
    return VirtualDesktop::Count(place, [](const QColor& pixel) { return qGray(pixel.rgb()) < 100; });
  }
  /// The only icon of the notification area, at the lower right corner; its dial is white as nothing else there.
  static bool IconIsThere() {
    const QRect corner(1024 - 24, 768 - 24, 24, 24);
    return WaitFor([&] { return VirtualDesktop::Count(corner, [](QColor pixel) { return pixel == Qt::white; }) > 0; });
  }
  /// Clicks on the icon as a person does, who clicks again if nothing happens: the notification area takes its icon in
  /// on its own time.
  bool ClickIconUntil(const QString& how, const std::function<bool()>& condition) {
    for (int attempt = 0; attempt < 5; ++attempt) {
      desktop.Input("mousemove 1012 756 " + how);
      if (WaitFor(condition, 2000)) return true;
    }
    return false;
  }
  /// Where the frame that runs to or from the tray is seen last.
  QRect EndOfFrame() {
    QRect last;
    const auto frameIsThere = [&] {
      for (const QWidget* window : QApplication::topLevelWidgets()) {
        if (!window->isVisible() || window->windowType() != Qt::ToolTip || window->mask().isEmpty()) continue;
        last = window->geometry();
        return true;
      }
      return false;
    };
    if (WaitFor(frameIsThere)) WaitFor([&] { return !frameIsThere(); });
    return last;
  }
  bool PutInTray(const QString& key) {
    desktop.Input("key " + key);
    return WaitFor([&] { return !plant.panel.isVisible(); }) && IconIsThere();
  }
  /// The small window of this name once it has the keyboard.
  static QWidget& ActiveWindow(const QString& name) {
    const auto itIsThere = [&] {
      return QApplication::activeWindow() && QApplication::activeWindow()->objectName() == name;
    };
    if (!WaitFor(itIsThere)) throw std::runtime_error("no " + name.toStdString());
    return *QApplication::activeWindow();
  }

  VirtualDesktop& desktop = VirtualDesktop::Instance();
  PanelPlant plant;
};

TEST_F(DesktopTest, ThePanelShowsAWeightWithAGreenLampAndATareOfZeroBlank) {
  EXPECT_EQ(Ink(Cell(kCh, Item::Gross)), 0);
  plant.Tick(kCh, "  1250\n");
  const QPoint lamp = Cell(kCh, Item::Rx).topLeft() + QPoint(6, 6);
  EXPECT_TRUE(WaitFor([&] { return desktop.Picture().pixelColor(lamp) == QColor(0, 255, 0); }));
  EXPECT_GT(Ink(Cell(kCh, Item::Gross)), 20);
  EXPECT_EQ(Ink(Cell(kCh, Item::Tare)), 0);

  desktop.Input("mousemove 400 120");
  EXPECT_TRUE(WaitFor([&] { return plant.panel.findChild<QLabel*>("lfx")->text() == "400"; }));
  EXPECT_EQ(plant.panel.findChild<QLabel*>("lfy")->text(), "120");
}

TEST_F(DesktopTest, AChannelIsSetUpWhileElevenOthersGoOn) {
  for (int ch = 0; ch < 12; ++ch) plant.Connect(ch);
  plant.engine.configuration.CfgProc(CfgAction::WriteFormatFile, 10);
  plant.engine.configuration.CfgProc(CfgAction::WriteChannelFile, 6);
  int weight = 1000;
  // Each stream of the eleven is shown by the tick that it came in; the twelfth shows nothing.
  const auto expectAllInTime = [&] {
    const std::string text = std::to_string(++weight);
    for (std::size_t ch = 0; ch < 12; ++ch) plant.plant.ports.port[ch].waiting += "  " + text + "\n";
    plant.Tick(0, "");
    for (int ch = 0; ch < 12; ++ch) EXPECT_EQ(plant.tables.ChanGross[ch], ch == 6 ? "" : "  " + text) << ch;
  };
  desktop.Click(plant.Button("cmdSetup(6)"));
  ASSERT_TRUE(WaitFor([&] { return plant.setupForm.isActiveWindow(); }));
  EXPECT_FALSE(plant.panel.isEnabled());
  EXPECT_TRUE(WaitFor([&] { return plant.tables.ScreenPainted == True; })) << "the rows are drawn again";
  expectAllInTime();
  const QPoint lamp = Cell(kCh, Item::Rx).topLeft() + QPoint(6, 6);
  EXPECT_TRUE(WaitFor([&] { return desktop.Picture().pixelColor(lamp) == QColor(0, 255, 0); }));

  auto* const description = plant.setupForm.findChild<QLineEdit*>("tDeviceDesc");
  description->setFocus();
  for (const char* letter : {"S", "I", "L", "O"}) {
    desktop.Input(QString("key ") + letter);
    expectAllInTime();
  }
  EXPECT_TRUE(WaitFor([&] { return description->text() == "SILO"; })) << "the text was selected on entry";
  desktop.Input("key alt+o");
  EXPECT_TRUE(WaitFor([&] { return plant.panel.isActiveWindow() && plant.panel.isEnabled(); }));
  EXPECT_EQ(plant.panel.focusWidget()->objectName(), "cmdSetup(6)");
  EXPECT_EQ(plant.tables.ChanDeviceDesc[6], "SILO");
  plant.Tick(6, "");
  plant.Tick(6, "  2000\n");
  EXPECT_EQ(plant.tables.ChanStatusText[6], "Online...");

  desktop.Click(plant.Button("cmdSetup(6)"));
  ASSERT_TRUE(WaitFor([&] { return plant.setupForm.isActiveWindow(); }));
  desktop.Input("key Escape");
  EXPECT_TRUE(WaitFor([&] { return !plant.setupForm.isVisible(); }));
}

TEST_F(DesktopTest, TheDetailFillsWithTheNextStreamAndGreysThePanelUntilItIsClosed) {
  desktop.Click(plant.Button("cmdDetail(4)"));
  desktop.Click(plant.Button("CmdHelp"));
  EXPECT_FALSE(plant.dialogs.IsOpen()) << "a disabled channel has no detail, and help does nothing";
  for (const char* wayOut : {"Escape", "alt+F4", "alt+c"}) {
    desktop.Click(plant.Button("cmdDetail(3)"));
    QWidget& detail = ActiveWindow("frmDetail");
    EXPECT_TRUE(plant.panel.frameGeometry().contains(detail.frameGeometry()));
    for (const char* name : {"cmdPutInTray", "cmdEnd", "cmdRefresh", "CmdHelp", "cmdDetail(3)", "cmdSetup(31)"}) {
      EXPECT_FALSE(plant.Button(name).isEnabled()) << name;
    }
    const auto& gross = *detail.findChild<ValueLabel*>("Ld(0)");
    const QRect place(gross.mapToGlobal(QPoint(0, 0)), gross.size());
    const auto digits = [&] {
      return VirtualDesktop::Count(place, [](const QColor& pixel) { return qGray(pixel.rgb()) > 200; });
    };
    EXPECT_TRUE(WaitFor([&] { return desktop.Picture().pixelColor(place.center()) != Qt::black && digits() == 0; }));
    plant.Tick(kCh, "  1250\n");
    EXPECT_TRUE(WaitFor([&] { return digits() > 100; }));
    desktop.Input(QString("key ") + wayOut);
    EXPECT_TRUE(WaitFor([&] { return plant.Button("cmdEnd").isEnabled(); })) << wayOut;
    EXPECT_TRUE(WaitFor([&] { return plant.Button("cmdDetail(3)").hasFocus(); })) << "the keyboard is where it was";
  }
}

TEST_F(DesktopTest, TheRefreshRatesAreChangedWithMouseAndKeyboard) {
  desktop.Click(plant.Button("cmdRefresh"));
  QWidget& refresh = ActiveWindow("frmRefresh");
  auto& slider = *refresh.findChild<QSlider*>("Slider1");
  desktop.Click(slider, 0.95);
  ASSERT_TRUE(WaitFor([&] { return slider.value() == 2; }));
  desktop.Click(*refresh.findChild<QAbstractButton*>("cmdUpdate"));
  EXPECT_TRUE(WaitFor([&] { return plant.plant.events.timer1.interval == 50; }));
  desktop.Input("key alt+a");
  auto& box = *refresh.findChild<QLineEdit*>("tVal(0)");
  ASSERT_TRUE(WaitFor([&] { return box.hasFocus(); }));
  desktop.Input("key ctrl+a type 33");
  ASSERT_TRUE(WaitFor([&] { return box.text() == "33"; }));
  desktop.Input("key Return");
  EXPECT_TRUE(WaitFor([&] { return plant.tables.Timer1Interval == 33; }));
  desktop.Input("key alt+c");
  EXPECT_TRUE(WaitFor([&] { return plant.tables.RefreshOpen == False && plant.Button("cmdEnd").isEnabled(); }));
}

TEST_F(DesktopTest, TheIconInTheTrayBringsThePanelBackByDoubleClickAndByMenu) {
  EXPECT_EQ(plant.panel.focusWidget(), &plant.panel) << "a second Enter finds no button";
  desktop.Input("key m");
  desktop.Input("key ctrl+m");
  EXPECT_TRUE(QRect(900, 700, 124, 68).contains(EndOfFrame())) << "the frame runs to the icon";
  ASSERT_TRUE(IconIsThere());
  EXPECT_EQ(plant.tables.Minimized, True);
  EXPECT_THAT(Activity(), HasSubstr("Tarvex Manager Minimized"));
  EXPECT_TRUE(ClickIconUntil("click --repeat 2 --delay 60 1", [&] { return plant.panel.isVisible(); }));
  EXPECT_TRUE(PanelIsBack());
  EXPECT_THAT(Activity(), Not(HasSubstr("Tarvex Manager Maximized")));
  EXPECT_TRUE(WaitFor([&] { return plant.tables.ScreenPainted == True; }));

  ASSERT_TRUE(PutInTray("alt+m"));
  for (const char* choice : {"mnuCancel", "mnuRestore"}) {
    EXPECT_FALSE(plant.panel.isVisible());
    ASSERT_TRUE(ClickIconUntil("click 3", [] { return QApplication::activePopupWidget() != nullptr; }));
    auto& menu = *qobject_cast<QMenu*>(QApplication::activePopupWidget());
    desktop.ClickAt(menu.mapToGlobal(menu.actionGeometry(menu.findChild<QAction*>(choice)).center()));
    EXPECT_TRUE(WaitFor([] { return QApplication::activePopupWidget() == nullptr; })) << choice;
  }
  EXPECT_TRUE(PanelIsBack());
  EXPECT_THAT(Activity(), HasSubstr("Tarvex Manager Maximized"));

  ASSERT_TRUE(PutInTray("shift+m"));
  desktop.ShowTray(false);
  EXPECT_TRUE(WaitFor([&] { return plant.panel.isMinimized(); })) << "the way back may not vanish with the tray";
}

TEST_F(DesktopTest, WithoutANotificationAreaThePanelIsMadeSmallAndSaysSoOnce) {
  desktop.ShowTray(false);
  for (int round = 0; round < 2; ++round) {
    desktop.Click(plant.Button("cmdPutInTray"));
    ASSERT_TRUE(WaitFor([&] { return plant.panel.isMinimized(); }));
    desktop.Input("search --name ^Tarvex$ windowmap windowactivate");
    EXPECT_TRUE(PanelIsBack());
    EXPECT_TRUE(WaitFor([&] { return plant.tables.ScreenPainted == True; })) << "the rows stand still";
  }
  const std::string log = Activity();
  const std::size_t told = log.find("no notification area");
  ASSERT_NE(told, std::string::npos);
  EXPECT_EQ(log.find("no notification area", told + 1), std::string::npos);
}

TEST_F(DesktopTest, TheSystemIsStoppedAndStartedAgainWithTheKeyboardAlone) {
  const std::size_t held = plant.panel.Surface().Held();
  for (int round = 0; round < 3; ++round) {
    desktop.Input("key shift+x");
    ASSERT_TRUE(WaitFor([&] { return plant.startupForm.isActiveWindow() && !plant.panel.isVisible(); }));
    EXPECT_EQ(plant.plant.events.timer1.enabled, false);
    desktop.Input("key Return");
    ASSERT_TRUE(PanelIsBack());
    EXPECT_TRUE(WaitFor([&] { return plant.tables.ScreenPainted == True; }));
  }
  EXPECT_EQ(plant.panel.Surface().Held(), held);
  plant.panel.Unload();
  EXPECT_EQ(plant.panel.Surface().Held(), 0u);
  EXPECT_EQ(plant.plant.LogText(LogType::Drawing), "");
}

TEST_F(DesktopTest, ABoxStandsOverADetailAndLetsNothingElseBeClickedUntilItIsDismissed) {
  desktop.Click(plant.Button("cmdDetail(3)"));
  QWidget& detail = ActiveWindow("frmDetail");
  MessageBoxes boxes;
  boxes.Show("Tarvex Scan System Error", "Critical Error: 57  weights.log");
  ASSERT_TRUE(WaitFor([] { return qobject_cast<QMessageBox*>(QApplication::activeWindow()) != nullptr; }));
  desktop.Click(*detail.findChild<QAbstractButton*>("cmdClose"));
  EXPECT_TRUE(plant.dialogs.IsOpen());
  desktop.Input("key Return");
  ActiveWindow("frmDetail");
}

}  // namespace
