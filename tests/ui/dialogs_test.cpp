#include "ui/dialogs.h"

#include <gmock/gmock.h>

#include <QLabel>
#include <QPainter>

#include "platform/qt/text.h"
#include "tests/support/test_plant.h"
#include "tests/ui/offscreen.h"
#include "ui/value_label.h"

namespace {

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

  static QString Ld(int element) { return Find<ValueLabel>("frmDetail", QString("Ld(%1)").arg(element))->Text(); }

  QApplication& application = OffscreenApplication();
  TestPlant plant;
  Tables& tables = plant.tables;
  std::vector<bool> announced;
  Dialogs dialogs;
};

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

}  // namespace
