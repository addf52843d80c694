#include "platform/qt/message_boxes.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QMessageBox>
#include <QScreen>
#include <QTimer>

#include "core/transmission.h"
#include "platform/qt/text.h"
#include "tests/support/test_plant.h"

namespace {

QMessageBox* StandingBox() { return qobject_cast<QMessageBox*>(QApplication::activeModalWidget()); }

/// Does `step` each time a message box has come up, from a timer of the running program.
class Operator {
 public:
  explicit Operator(std::function<void(QMessageBox&)> step) {
    QObject::connect(&timer_, &QTimer::timeout, [this, step] {
      if (QMessageBox* box = StandingBox()) {
        texts.push_back(box->text());
        step(*box);
      }
    });
    timer_.start(5);
  }

  std::vector<QString> texts;

 private:
  QTimer timer_;
};

class MessageBoxesTest : public testing::Test {
 protected:
  MessageBoxes boxes;
};

TEST_F(MessageBoxesTest, BoxesAskedForMeanwhileWaitTheirTurnAndNoneIsShownTwice) {
  int returned = 0;
  Operator human([&](QMessageBox& box) {
    for (int n = 0; n < 50 && returned < 50; ++n) {
      boxes.Show("Tarvex Scan System Error", "Critical Error: " + std::to_string(n % 12));
      ++returned;
    }
    box.accept();
  });
  boxes.Show("Tarvex Scan System Error", "Critical Error: 0");
  ASSERT_EQ(human.texts.size(), 9U) << "eight waited behind the first";
  EXPECT_EQ(human.texts[0], "Critical Error: 0");
  for (int n = 1; n <= 8; ++n)
    EXPECT_EQ(human.texts[static_cast<std::size_t>(n)], "Critical Error: " + QString::number(n));
  EXPECT_EQ(returned, 50) << "those who ask meanwhile are not held";
}

TEST_F(MessageBoxesTest, WhateverTheTextTheBoxFitsTheScreen) {
  const std::string texts[] = {std::string(5000, 'W'), std::string(5000, '\x01'), "<h1>" + std::string(300, 'x')};
  for (const std::string& text : texts) {
    QSize size;
    Operator human([&](QMessageBox& box) {
      size = box.frameSize();
      box.accept();
    });
    boxes.Show("Tarvex Scan System Error", text, text);
    EXPECT_EQ(size.boundedTo(QGuiApplication::primaryScreen()->size()), size) << text.substr(0, 10);
    EXPECT_EQ(human.texts.at(0).left(1), ToVisibleText(text).left(1));
  }
}

TEST_F(MessageBoxesTest, ABoxInTheMiddleOfATickHoldsTheScanWhileTheTxTimerGoesOn) {
  TestPlant plant;
  plant.notice.onBox = [&](const MemoryNotice::Box& box) { boxes.Show(box.caption, box.text); };
  plant.Connect(0, 10);
  plant.tables.ChanConnected[0] = False;
  plant.tables.ReinitChannel = 0;
  plant.ports.port[0].openError = 11;
  Operator human([&](QMessageBox& box) {
    plant.Tick();
    TxTimerTick(plant.engine);
    if (plant.tables.TxTick == 3) box.accept();
  });
  plant.Tick();
  EXPECT_EQ(plant.tables.ScanTick, 1);
  EXPECT_EQ(plant.tables.TxTick, 3);
  EXPECT_EQ(plant.tables.ScanBusy, False);
  EXPECT_TRUE(human.texts.at(0).startsWith("Critical Error: 11  "));
}

}  // namespace
