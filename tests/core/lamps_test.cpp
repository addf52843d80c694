#include "core/lamps.h"

#include <gtest/gtest.h>

#include "tests/support/test_plant.h"

namespace {

/// Tray pictures shown, as letters: r receiving, x transmitting, i idle.
class TrayForm : public HeadlessMainForm {
 public:
  std::string shown;
  void SetTrayPicture(TrayPicture picture) override {
    shown += picture == TrayPicture::iRcv ? 'r' : picture == TrayPicture::iXmit ? 'x' : 'i';
  }
};

TEST(LampsTest, TrafficLampsWaitATickAndTenWhileMinimised) {
  struct Case {
    bool minimized;
    int ticks;
    bool changes;
  };
  const Case cases[] = {{false, 0, false}, {false, 1, true}, {false, -1, true},
                        {true, 9, false},  {true, 10, true}, {true, -9999999, true}};
  for (const Case& c : cases) {
    for (int item : {Item::Rx, Item::Tx}) {
      TestPlant plant;
      TrayForm form;
      Tables& t = plant.tables;
      t.Minimized = AsBoolean(c.minimized);
      t.ScanTick = 1000;
      t.ChanLampTick[item][3] = 1000 - c.ticks;
      (item == Item::Rx ? TurnRXLedON : TurnTXLedON)(t, form, 3);
      EXPECT_EQ(t.ChanIndicator[item][3] == True, c.changes) << c.ticks;
      EXPECT_EQ(t.ChanDirty[item][3] == True, c.changes);
      EXPECT_EQ(t.ChanLampTick[item][3] == 1000, c.changes || c.ticks == 0);
      EXPECT_EQ(form.shown, !(c.minimized && c.changes) ? "" : item == Item::Rx ? "r" : "x");
    }
  }
}

TEST(LampsTest, TheReceiveLampGoesOffUnderTheSameRuleAndTheTransmitLampAfterATick) {
  TestPlant plant;
  TrayForm form;
  Tables& t = plant.tables;
  t.Minimized = True;
  t.ScanTick = 5;
  for (int item : {Item::Rx, Item::Tx}) t.ChanIndicator[item][0] = True;
  TurnRXLedOff(t, form, 0);
  TurnTXLedOff(t, 0);
  EXPECT_EQ(t.ChanIndicator[Item::Rx][0], True);
  EXPECT_EQ(t.ChanIndicator[Item::Tx][0], False);
  t.ScanTick = 10;
  TurnRXLedOff(t, form, 0);
  EXPECT_EQ(t.ChanIndicator[Item::Rx][0], False);
  EXPECT_EQ(form.shown, "i");
}

}  // namespace
