#include "platform/qt/message_boxes.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QMessageBox>
#include <QTimer>

#include "platform/qt/text.h"
#include "tests/support/test_plant.h"
#include "tests/ui/wait_for.h"

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
  int asked = 0;
  Operator human([&](QMessageBox& box) {
    for (; asked < 50; ++asked) boxes.Show("Tarvex Scan System Error", "Critical Error: " + std::to_string(asked % 12));
    box.accept();
  });
  boxes.ShowUntilRead("Tarvex Scan System Error", "Critical Error: 0");
  ASSERT_EQ(human.texts.size(), 9U) << "eight waited behind the first";
  for (int n = 0; n <= 8; ++n)
    EXPECT_EQ(human.texts[static_cast<std::size_t>(n)], "Critical Error: " + QString::number(n));
}

TEST_F(MessageBoxesTest, WhateverTheTextTheBoxFitsTheSmallestScreen) {
  const std::string texts[] = {std::string(5000, 'W'), std::string(5000, '\x01'), "<h1>" + std::string(300, 'x')};
  for (const std::string& text : texts) {
    boxes.Show("Tarvex Scan System Error", text, text);
    QMessageBox* const box = StandingBox();
    ASSERT_NE(box, nullptr);
    const QSize size = box->frameSize();
    EXPECT_EQ(size.boundedTo(QSize(800, 560)), size) << text.substr(0, 10);
    EXPECT_EQ(box->text().left(1), ToVisibleText(text).left(1));
    box->accept();
  }
}

TEST_F(MessageBoxesTest, ABoxAboutOneChannelHoldsNoTickAndTheOthersAreScannedWhileItStands) {
  TestPlant plant;
  plant.notice.onBox = [&](const MemoryNotice::Box& box) { boxes.Show(box.caption, box.text); };
  for (int ch : {0, 1}) plant.Connect(ch, 10);
  plant.tables.ChanConnected[0] = False;
  plant.tables.ReinitChannel = 0;
  plant.ports.port[0].openError = 11;
  plant.Tick();
  ASSERT_NE(StandingBox(), nullptr);
  EXPECT_TRUE(StandingBox()->text().startsWith("Critical Error: 11  "));
  plant.Tick(1, "12\n");
  EXPECT_EQ(plant.tables.ScanTick, 2);
  EXPECT_EQ(plant.tables.ChanStatusText[1], "Online...");
}

TEST_F(MessageBoxesTest, WhatIsAskedForAtTheEndIsShownWhenEverythingElseHasEnded) {
  boxes.DismissAll();
  boxes.Show("Tarvex", "Error Deleting hArial Object", {}, MessageBoxes::Icon::None);
  EXPECT_EQ(StandingBox(), nullptr);
  QMessageBox::Icon icon = QMessageBox::Critical;
  Operator human([&](QMessageBox& box) {
    icon = box.icon();
    box.accept();
  });
  boxes.ShowLast();
  EXPECT_EQ(human.texts.size(), 1U);
  EXPECT_EQ(icon, QMessageBox::NoIcon);
}

TEST_F(MessageBoxesTest, ABoxThatIsMadeSmallComesBack) {
  boxes.Show("Tarvex", "text");
  QMessageBox* const box = StandingBox();
  ASSERT_NE(box, nullptr);
  box->showMinimized();
  EXPECT_TRUE(WaitFor([&] { return !box->isMinimized(); }));
  boxes.DismissAll();
}

}  // namespace
