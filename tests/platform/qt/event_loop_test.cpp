#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <algorithm>

#include "platform/qt/qt_event_loop.h"

namespace {

TEST(EventLoopTest, OtherTimersRunInsideATickButTheSameOneNeverNests) {
  int argc = 1;
  char name[] = "test";
  char* argv[] = {name, nullptr};
  const QCoreApplication application(argc, argv);
  QtEventLoop loop;
  int depth = 0, deepest = 0, sent = 0;
  bool waited = false;
  const QDeadlineTimer limit(10'000);
  loop.TxTimer().OnTick([&] { ++sent; });
  loop.Timer1().OnTick([&] {
    deepest = std::max(deepest, ++depth);
    const int before = sent;
    while (sent < before + 5 && !limit.hasExpired()) loop.DoEvents();
    --depth;
    waited = true;
  });
  for (QtPeriodicTimer* timer : {&loop.TxTimer(), &loop.Timer1()}) {
    timer->SetInterval(1);
    timer->SetEnabled(true);
  }
  while (!waited && !limit.hasExpired()) QCoreApplication::processEvents();
  EXPECT_GE(sent, 5);
  EXPECT_EQ(deepest, 1);
}

}  // namespace
