#include "platform/qt/message_boxes.h"

#include <gmock/gmock.h>

#include <QMessageBox>
#include <QScreen>
#include <QTimer>

#include "core/scan_engine.h"
#include "core/transmission.h"
#include "platform/qt/text.h"
#include "tests/support/test_plant.h"
#include "tests/ui/offscreen.h"
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
  QApplication& application = OffscreenApplication();
  MessageBoxes boxes;
};

TEST_F(MessageBoxesTest, ABoxHoldsItsCallerWhileTheTimersGoOn) {
  int ticks = 0;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] {
    if (++ticks == 5) StandingBox()->accept();
  });
  timer.start(1);
  boxes.Show("Tarvex Setup Error", "Disabling Device Now...");
  EXPECT_EQ(ticks, 5);
  EXPECT_FALSE(boxes.Standing());
}

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

TEST_F(MessageBoxesTest, TheEndOfTheProgramClosesTheBoxAndNoneComesAfter) {
  QTimer::singleShot(10, [&] {
    boxes.Show("Tarvex", "second");
    boxes.DismissAll();
  });
  boxes.Show("Tarvex", "first");
  boxes.Show("Tarvex", "third");
  EXPECT_EQ(StandingBox(), nullptr);
}

TEST_F(MessageBoxesTest, AProgramThatIsToldToQuitIsNotHeldByABox) {
  QTimer::singleShot(0, [&] {
    QTimer::singleShot(10, [] { QCoreApplication::exit(); });
    boxes.Show("Tarvex", "first");
    boxes.Show("Tarvex", "second");
  });
  QTimer::singleShot(8000, [] { FAIL() << "held by a box"; });
  QApplication::exec();
  EXPECT_EQ(StandingBox(), nullptr);
}

TEST_F(MessageBoxesTest, TheWindowBehindABoxMayBeTakenDownWhileItStands) {
  auto window = std::make_unique<QWidget>();
  window->show();
  ASSERT_TRUE(WaitFor([&] { return window->isActiveWindow(); }));
  Operator human([&](QMessageBox& box) {
    window.reset();
    box.accept();
  });
  boxes.Show("Tarvex", "first");
  EXPECT_EQ(window, nullptr);
}

TEST_F(MessageBoxesTest, WhateverTheTextTheBoxFitsTheScreen) {
  const std::string texts[] = {std::string(5000, 'W'), std::string(5000, '\x01'), "<h1>" + std::string(300, 'x'),
                               "a\r\nb", std::string("\xE2\x80\xAE") + "abc"};
  for (const std::string& text : texts) {
    QSize size;
    QString shown;
    Operator human([&](QMessageBox& box) {
      size = box.frameSize();
      shown = box.text();
      box.accept();
    });
    boxes.Show("Tarvex Scan System Error", text);
    const QSize screen = QGuiApplication::primaryScreen()->size();
    EXPECT_LE(size.width(), screen.width());
    EXPECT_LE(size.height(), screen.height()) << text.substr(0, 10);
    EXPECT_EQ(shown.left(1), ToVisibleText(text).left(1));
  }
}

TEST_F(MessageBoxesTest, TheErrorBoxCanBeTried) {
  QString title;
  QMessageBox::Icon icon{};
  Operator human([&](QMessageBox& box) {
    title = box.windowTitle();
    icon = box.icon();
    box.accept();
  });
  mb(boxes, RunTimeError(3045, "a.db is locked"));
  EXPECT_EQ(title, "Tarvex VantODBC Error");
  EXPECT_EQ(icon, QMessageBox::Warning);
  EXPECT_THAT(human.texts, testing::ElementsAre(QString("TEST: Channel: 1  JET Database Error: 3045  a.db is locked\n"
                                                        "Please Contact Orvane Technical Services...")));
}

class BoxNotice : public OperatorNotice {
 public:
  explicit BoxNotice(MessageBoxes& boxes) : boxes_(boxes) {}
  void MessageBox(std::string_view caption, std::string_view text) override { boxes_.Show(caption, text); }
  void Speak(std::string_view) override {}

 private:
  MessageBoxes& boxes_;
};

TEST_F(MessageBoxesTest, ABoxInTheMiddleOfATickHoldsTheScanWhileTheTxTimerGoesOn) {
  TestPlant parts;
  BoxNotice notice(boxes);
  Manager manager({parts.system, parts.events, parts.ports, parts.files, notice, parts.opc, parts.startupForm,
                   parts.mainForm, parts.dialogs},
                  "/plant");
  Tables& tables = manager.Store();
  tables.Timer1Sleep = 0;
  tables.ReinitChannel = 0;
  tables.ChannelsInitialised = True;
  tables.ChanEnabled[0] = True;
  tables.ChanProtocol[0] = 10;
  parts.ports.port[0].openError = 11;
  Operator human([&](QMessageBox& box) {
    Timer1Tick(manager.Parts());
    TxTimerTick(manager.Parts());
    if (tables.TxTick == 3) box.accept();
  });
  Timer1Tick(manager.Parts());
  EXPECT_EQ(tables.ScanTick, 1);
  EXPECT_EQ(tables.TxTick, 3);
  EXPECT_EQ(tables.ScanBusy, False);
  EXPECT_TRUE(human.texts.at(0).startsWith("Critical Error: 11  "));
}

}  // namespace
