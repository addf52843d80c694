#include "ui/dialogs.h"

#include <gmock/gmock.h>

#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSlider>
#include <QTest>

#include "platform/qt/text.h"
#include "tests/support/test_plant.h"
#include "tests/ui/offscreen.h"
#include "tests/ui/wait_for.h"
#include "ui/frm_sql_detail.h"
#include "ui/value_label.h"

namespace {

using testing::ElementsAre;

/// A plant with one scale, and an operator in front of its small windows.
class DialogsTest : public testing::Test {
 protected:
  static constexpr int kCh = 4;
  static constexpr int kProto = 10;

  DialogsTest() {
    dialogs.Use(plant.engine);
    dialogs.OnOpen([this](bool open) { announced.push_back(open); });
    plant.dialogs.onDetail = [this](int element, std::string_view text) { dialogs.ShowDetail(element, text); };
    plant.Connect(kCh, kProto);
    tables.ProtoGrossEnable[kProto] = True;
    tables.ProtoGrossPos[kProto] = 1;
    tables.ProtoGrossLen[kProto] = 6;
    tables.ChanDeviceDesc[kCh] = "Silo 5";
  }

  static QWidget* Window(const QString& name) {
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (window->objectName() == name && window->isVisible()) return window;
    }
    return nullptr;
  }

  template <typename Control>
  static Control* Find(const QString& window, const QString& name) {
    Control* control = Window(window) ? Window(window)->findChild<Control*>(name) : nullptr;
    if (!control) throw std::runtime_error(ToBytes("no " + name + " in an open " + window));
    return control;
  }

  static void Click(const QString& window, const QString& button) {
    QTest::mouseClick(Find<QPushButton>(window, button), Qt::LeftButton);
  }

  static QString Ld(int element) { return Find<ValueLabel>("frmDetail", QString("Ld(%1)").arg(element))->Text(); }

  QApplication& application = OffscreenApplication();
  TestPlant plant;
  Tables& tables = plant.tables;
  std::vector<bool> announced;
  Dialogs dialogs;
};

TEST_F(DialogsTest, OneWindowIsOpenAtATimeAndTheMainWindowIsToldOfItsBeginningAndEnd) {
  const std::vector<std::function<void()>> waysToClose = {
      [] { Click("frmDetail", "cmdClose"); },
      [] { QTest::keyClick(Window("frmDetail"), Qt::Key_Escape); },
      [] { QTest::keyClick(Window("frmDetail"), Qt::Key_C, Qt::AltModifier); },
      [] { Window("frmDetail")->close(); },
      [this] { dialogs.Close(); },
  };
  for (const auto& close : waysToClose) {
    announced.clear();
    dialogs.cmdDetail(kCh, nullptr);
    ASSERT_TRUE(WaitFor([] { return Window("frmDetail")->isActiveWindow(); }));
    dialogs.cmdRefresh(nullptr);
    EXPECT_EQ(Window("frmRefresh"), nullptr);
    EXPECT_THAT(announced, ElementsAre(true));
    EXPECT_EQ(tables.ChanDetailOpen[kCh], True);
    close();
    EXPECT_TRUE(WaitFor([] { return Window("frmDetail") == nullptr; }));
    EXPECT_THAT(announced, ElementsAre(true, false));
    EXPECT_EQ(tables.ChanDetailOpen[kCh], False);
  }
}

TEST_F(DialogsTest, AChannelSetUpForTheMissingVirtualTerminalSaysSoAndLeavesTheButtonsAlone) {
  tables.ChanVirtualTerminal[kCh] = True;
  dialogs.cmdDetail(kCh, nullptr);
  ASSERT_EQ(plant.notice.boxes.size(), 1U);
  EXPECT_THAT(plant.notice.boxes[0].text, testing::HasSubstr("channel 5"));
  EXPECT_FALSE(dialogs.IsOpen());
  EXPECT_TRUE(announced.empty());
}

TEST_F(DialogsTest, TheRawStreamIsShownWithItsControlCharactersInDebugMode) {
  tables.DebugMode = True;
  dialogs.cmdDetail(kCh, nullptr);
  EXPECT_FALSE(Find<QLabel>("frmDetail", "l(22)")->isVisible());
  plant.Tick(kCh, "\x02 1250\n");
  EXPECT_TRUE(Find<QLabel>("frmDetail", "l(22)")->isVisible());
  EXPECT_EQ(Ld(22), u"7 ==> \u2039STX\u203A 1250\u2039LF\u203A"_qs);
}

/// The window without one of its labels.
QImage PictureWithout(const QWidget& label) {
  QWidget& window = *label.window();
  QPixmap picture = window.grab();
  QPainter(&picture).fillRect(QRect(label.mapTo(&window, QPoint(0, 0)), label.size()), Qt::black);
  return picture.toImage();
}

TEST_F(DialogsTest, WhateverATextHoldsItIsShownInItsPlaceAndNothingElseMoves) {
  tables.DebugMode = True;
  dialogs.cmdDetail(kCh, nullptr);
  plant.Tick(kCh, "  1250\n");
  const QSize size = Window("frmDetail")->size();
  const std::string texts[] = {std::string(5000, 'W'), std::string(5000, '\n'), "W\xE4gung \xFF\xFE", "<h1>a</h1>",
                               std::string(2000, '\0')};
  for (const DetailField& field : kDetailFields) {
    const auto* label = Find<ValueLabel>("frmDetail", QString("Ld(%1)").arg(field.element));
    const QImage before = PictureWithout(*label);
    for (const std::string& text : texts) {
      dialogs.ShowDetail(field.element, text);
      EXPECT_EQ(label->Text(), ToVisibleText(text));
      EXPECT_EQ(PictureWithout(*label), before) << field.caption << " " << text.substr(0, 10);
      EXPECT_EQ(Window("frmDetail")->size(), size);
    }
  }
}

class RefreshTest : public DialogsTest {
 protected:
  RefreshTest() { dialogs.cmdRefresh(nullptr); }

  static QLineEdit* Box(int box) { return Find<QLineEdit>("frmRefresh", QString("tVal(%1)").arg(box)); }

  static std::vector<QString> Boxes() {
    std::vector<QString> texts;
    for (int box = 0; box < 6; ++box) texts.push_back(Box(box)->text());
    return texts;
  }

  static void Type(int box, const QString& text) {
    Box(box)->selectAll();
    QTest::keyClicks(Box(box), text);
  }
};

TEST_F(RefreshTest, OnlyNumbersCanBeTypedAndAnUpdateBringsThemInsideTheirLimits) {
  Click("frmRefresh", "cmdAdvanced");
  Type(0, "-3x0y");
  EXPECT_EQ(Box(0)->text(), "30");
  Type(1, "99999");
  Type(2, "0");
  Type(3, "9");
  Box(4)->clear();
  Click("frmRefresh", "cmdUpdate");
  EXPECT_THAT(Boxes(), ElementsAre("30", "1000", "1", "0", "15", "1"))
      << "the pause of the TxTimer, which is not read, cannot be typed";
  EXPECT_EQ(plant.events.timer1.interval, 30);
  EXPECT_EQ(plant.events.gdiTimer.interval, 15) << "an empty box changes nothing";

  Click("frmRefresh", "cmdUnAdvanced");
  EXPECT_EQ(Find<QSlider>("frmRefresh", "Slider1")->value(), 2) << "the slider stands where the numbers put it";
  EXPECT_EQ(Boxes()[0], "30") << "and leaves them alone";
}

TEST_F(DialogsTest, TheSqlDetailHasItsThreeBoxesAndCloses) {
  frmSQLDetail detail;
  detail.show();
  for (const char* name : {"tSqlData", "tRxData", "tTxData"})
    EXPECT_TRUE(detail.findChild<QPlainTextEdit*>(name)) << name;
  Click("frmSQLDetail", "cmdClose");
  EXPECT_FALSE(detail.isVisible());
}

}  // namespace
