#include "publish/automation.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

class Client : public DeviceSink {
 public:
  int events = 0;
  std::function<void()> onUpdate;
  void CUpdate() override {
    ++events;
    if (onUpdate) onUpdate();
  }
};

TEST(AutomationTest, EveryClientHearsOfAnUpdateAndMayLeaveInTheMiddleOfIt) {
  DeviceObjects objects;
  Device& device = *objects.At(32);
  Client leaving, next;
  device.Attach(leaving);
  device.Attach(next);
  leaving.onUpdate = [&] { device.Detach(leaving); };
  for (int update = 0; update < 2; ++update) device.CDoUpdate();
  EXPECT_EQ(leaving.events, 1);
  EXPECT_EQ(next.events, 2);
}

}  // namespace
