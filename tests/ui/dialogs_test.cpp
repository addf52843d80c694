#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QLabel>
#include <QPainter>
#include <QTest>

#include "platform/qt/text.h"
#include "tests/ui/panel_plant.h"
#include "ui/value_label.h"

namespace {

constexpr int kCh = 4;

/// A plant with one scale, and its detail view in debug mode once it is opened.
class DetailWindowTest : public testing::Test {
 protected:
  QWidget& Open() {
    plant.Connect(kCh);
    plant.tables.DebugMode = True;
    plant.dialogs.cmdDetail(kCh, nullptr);
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (window->objectName() == "frmDetail" && window->isVisible()) return *window;
    }
    throw std::runtime_error("no detail view");
  }

  PanelPlant plant;
};

TEST_F(DetailWindowTest, TheVirtualTerminalSendsKeysOfMouseAndKeyboardToItsNode) {
  plant.Connect(kCh);
  plant.tables.ChanVirtualTerminal[kCh] = True;
  MemoryTerminals& terminals = plant.plant.terminals;
  terminals.registered = true;
  plant.dialogs.cmdDetail(kCh, nullptr);
  ASSERT_TRUE(plant.dialogs.IsOpen());
  QWidget* form = nullptr;
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->objectName() == "VANTOR") form = window;
  }
  ASSERT_NE(form, nullptr);
  EXPECT_EQ(form->windowTitle(), " Tarvex Channel 5  Virtual Vantor...");
  auto& picture = *form->findChild<QWidget*>("Picture1");
  QTest::keyClick(&picture, Qt::Key_1);
  EXPECT_TRUE(terminals.keys.empty()) << "no node is chosen";
  form->findChild<QAbstractButton*>("Option1(2)")->click();
  form->findChild<QAbstractButton*>("Label22")->click();
  QTest::keyClick(&picture, Qt::Key_1);
  QTest::keyClick(&picture, Qt::Key_F5);
  QTest::keyClick(&picture, Qt::Key_Escape);
  QTest::keyClick(&picture, Qt::Key_Backspace);
  form->findChild<QAbstractButton*>("Key_Z")->click();
  const std::vector<MemoryTerminals::Key> sent = {{3, 0, 46}, {3, 0, 49}, {3, 0, 7}, {3, 0, 2},
                                                  {3, 0, 27}, {3, 1, 6},  {3, 1, 8}, {3, 1, 7}};
  EXPECT_EQ(terminals.keys, sent);
  EXPECT_TRUE(form->isVisible()) << "Esc is a key of the terminal";
  form->findChild<QAbstractButton*>("cmdClose")->click();
  EXPECT_FALSE(plant.dialogs.IsOpen());

  terminals.registered = false;
  plant.dialogs.cmdDetail(kCh, nullptr);
  form->findChild<QAbstractButton*>("Key_Z")->click();
  ASSERT_EQ(plant.plant.notice.boxes.size(), 1U);
  EXPECT_EQ(plant.plant.notice.boxes[0].caption, "VANTAPI32.DLL Error");
  EXPECT_THAT(plant.plant.notice.boxes[0].text, testing::StartsWith("Error Code= VANT_INVALID_PROCESS\r\nA process"));
  EXPECT_EQ(terminals.keys.size(), sent.size()) << "the key is not sent again";
}

TEST_F(DetailWindowTest, TheRawStreamIsShownWithItsControlCharactersInDebugMode) {
  const QWidget& detail = Open();
  const auto& caption = *detail.findChild<QLabel*>("l(22)");
  EXPECT_FALSE(caption.isVisible());
  plant.Tick(kCh, "\x02 1250\n");
  EXPECT_TRUE(caption.isVisible());
  EXPECT_EQ(detail.findChild<ValueLabel*>("Ld(22)")->Text(), u"7 ==> \u2039STX\u203A 1250\u2039LF\u203A"_qs);
}

/// The window without one of its labels.
QImage PictureWithout(const QWidget& label) {
  QWidget& window = *label.window();
  QPixmap picture = window.grab();
  QPainter(&picture).fillRect(QRect(label.mapTo(&window, QPoint(0, 0)), label.size()), Qt::black);
  return picture.toImage();
}

TEST_F(DetailWindowTest, WhateverATextHoldsItIsShownInItsPlaceAndNothingElseMoves) {
  const QWidget& detail = Open();
  plant.Tick(kCh, "  1250\n");
  const QSize size = detail.size();
  const std::string texts[] = {std::string(5000, 'W'), std::string(5000, '\n'), "W\xE4gung \xFF\xFE", "<h1>a</h1>",
                               std::string(2000, '\0')};
  for (const DetailField& field : kDetailFields) {
    const auto* label = detail.findChild<ValueLabel*>(QString("Ld(%1)").arg(field.element));
    const QImage before = PictureWithout(*label);
    for (const std::string& text : texts) {
      plant.dialogs.ShowDetail(field.element, text);
      EXPECT_EQ(label->Text(), ToVisibleText(text));
      EXPECT_EQ(PictureWithout(*label), before) << field.caption << " " << text.substr(0, 10);
      EXPECT_EQ(detail.size(), size);
    }
  }
}

}  // namespace
