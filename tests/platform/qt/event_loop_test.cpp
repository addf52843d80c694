#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <algorithm>
#include <csignal>

#include "platform/qt/qt_event_loop.h"
#include "platform/qt/termination.h"

namespace {

/// Runs the loop until `done`; false if that takes longer than any healthy machine needs.
template <typename Condition>
bool RunUntil(const Condition& done) {
  const QDeadlineTimer limit(10'000);
  while (!done() && !limit.hasExpired()) QCoreApplication::processEvents();
  return done();
}

class EventLoopTest : public testing::Test {
 protected:
  EventLoopTest() {
    for (QtPeriodicTimer* timer : {&loop.Timer1(), &loop.TxTimer(), &loop.GDITimer()}) timer->SetInterval(1);
  }

  int argc = 1;
  char name[5] = "test";
  char* argv[2] = {name, nullptr};
  QCoreApplication application{argc, argv};
  QtEventLoop loop;
};

TEST_F(EventLoopTest, OtherTimersRunInsideATickButTheSameOneNeverNests) {
  int depth = 0;
  int deepest = 0;
  int sent = 0;
  bool waited = false;
  loop.TxTimer().OnTick([&] { ++sent; });
  loop.Timer1().OnTick([&] {
    deepest = std::max(deepest, ++depth);
    const int before = sent;
    const QDeadlineTimer limit(10'000);
    while (sent < before + 5 && !limit.hasExpired()) loop.DoEvents();
    --depth;
    waited = true;
  });
  loop.TxTimer().SetEnabled(true);
  loop.Timer1().SetEnabled(true);
  EXPECT_TRUE(RunUntil([&] { return waited; }));
  EXPECT_GE(sent, 5);
  EXPECT_EQ(deepest, 1);
}

}  // namespace
