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

TEST(AutomationTest, TheConnectorHandsOutTheSameThirtyThreeObjectsToEverybody) {
  DeviceObjects objects;
  Connector first(objects);
  Connector second(objects);
  for (const std::int16_t index : std::initializer_list<std::int16_t>{0, 31, 32}) {
    EXPECT_EQ(first.Device(index), second.Device(index));
    EXPECT_NE(first.Device(index), first.Device(1));
  }
  for (const std::int16_t index : std::initializer_list<std::int16_t>{-1, 33, 32767}) {
    try {
      first.Device(index);
      ADD_FAILURE() << index;
    } catch (const RunTimeError& fault) {
      EXPECT_EQ(fault.Number(), ErrorNumber::SubscriptOutOfRange);
      EXPECT_TRUE(fault.Description().starts_with("Subscript out of range")) << fault.Description();
    }
  }
}

TEST(AutomationTest, OnlyCDoUpdateMovesACommandIntoTheChannelAndEveryClientHearsOfIt) {
  Tables tables;
  Automation automation(tables);
  automation.BindDevices();
  automation.BindDevices();
  Client one, two;
  Device& device = *automation.Objects().At(5);
  device.Attach(one);
  device.Attach(two);
  device.CCmd = 3;
  device.CCmdParm = 12.5;
  device.CCmdStat = 7;
  EXPECT_EQ(tables.ChanCmdState[5], 0);
  device.CDoUpdate();
  EXPECT_EQ(tables.ChanCmdState[5], 3);
  EXPECT_EQ(tables.ChanCmdParm[5], 12.5);
  EXPECT_EQ(tables.ChanCmdStatus[5], 7);
  EXPECT_EQ(one.events, 1);
  EXPECT_EQ(two.events, 1);
}

TEST(AutomationTest, AClientMayLeaveInTheMiddleOfAnEvent) {
  DeviceObjects objects;
  Device& device = *objects.At(32);
  Client leaving, next, late;
  device.Attach(leaving);
  device.Attach(next);
  leaving.onUpdate = [&] {
    device.Detach(leaving);
    device.Attach(late);
  };
  device.CDoUpdate();
  device.CDoUpdate();
  EXPECT_EQ(leaving.events, 1);
  EXPECT_EQ(next.events, 2);
  EXPECT_EQ(late.events, 1) << "whoever comes during an event gets the next one";
}

TEST(AutomationTest, TheHandBackGivesTheCommandStateToTheObject) {
  Tables tables;
  Automation automation(tables);
  automation.BindDevices();
  Device& device = *automation.Objects().At(0);
  Client client;
  device.Attach(client);
  device.CCmd = 9;  // written by a client, lost to the hand-back
  tables.ChanCmdParm[0] = 2.5;
  tables.ChanCmdStatus[0] = 103;
  tables.ChanUpdatePending[0] = True;
  automation.CallDeviceUpdateMethod(0);
  EXPECT_EQ(device.CCmd, 0);
  EXPECT_EQ(device.CCmdParm, 2.5);
  EXPECT_EQ(device.CCmdStat, 103);
  EXPECT_EQ(client.events, 1);
  EXPECT_EQ(tables.ChanUpdatePending[0], False);
}

TEST(AutomationTest, AStatusThatDoesNotFitSixteenBitsOverflowsOnce) {
  Tables tables;
  Automation automation(tables);
  automation.BindDevices();
  tables.ChanCmdStatus[0] = 32668 + 100;
  tables.ChanUpdatePending[0] = True;
  try {
    automation.CallDeviceUpdateMethod(0);
    ADD_FAILURE();
  } catch (const RunTimeError& fault) {
    EXPECT_EQ(fault.Number(), ErrorNumber::Overflow);
    EXPECT_EQ(fault.Description(), "Overflow: CCmdStat 32768 does not fit 16 bits");
  }
  EXPECT_EQ(tables.ChanUpdatePending[0], False) << "or every tick from now on would end here";
}

TEST(AutomationTest, TheWatcherHearsOnceAVisitOfAllFieldsTheProgramWrote) {
  struct Watcher : DeviceFieldWatcher {
    std::vector<std::pair<int, unsigned>> heard;
    void FieldsWritten(int index, unsigned fields) override { heard.emplace_back(index, fields); }
  };
  Tables tables;
  Automation automation(tables);
  Watcher watcher;
  automation.SetWatcher(&watcher);
  tables.ChanGross[1] = "  -12.50 kg";
  for (int kind = 0; kind <= 11; ++kind) automation.UpdateActiveX(kind, 1);
  automation.UpdateActiveX(1, 32);
  automation.AnnounceFields(1);
  automation.AnnounceFields(1);
  EXPECT_EQ(watcher.heard,
            (std::vector<std::pair<int, unsigned>>{{1, DeviceField::Gross | DeviceField::Tare | DeviceField::Net |
                                                           DeviceField::ScaleStat | DeviceField::DeviceDesc}}));
  EXPECT_EQ(automation.Objects().At(1)->CGross, -12.5);
  EXPECT_EQ(automation.Objects().At(1)->CTare, 0) << "a text without a number";
  EXPECT_EQ(automation.Objects().At(32)->CGross, 0);
}

}  // namespace
