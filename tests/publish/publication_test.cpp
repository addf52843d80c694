#include "publish/publication.h"

#include <gtest/gtest.h>

#include "tests/support/test_plant.h"

namespace {

/// Channel 0 with all outlets on; `Served` tells in order what they got.
class OutletPlant : public TestPlant, private DdeItemWatcher, private DeviceSink {
 public:
  OutletPlant() {
    Connect(0, 2);
    tables.ChanOpcEnabled[0] = tables.ChanDdeServer[0] = True;
    publication.BindDevices();
    publication.Topics().SetWatcher(this);
    Object().Attach(*this);
  }
  Publication& publication = manager.Publishing();
  Device& Object() { return *publication.Devices().Objects().At(0); }

  std::string Served() {
    for (; seenCalls_ < opc.control[0].calls.size(); ++seenCalls_) {
      served_ = "opc " + opc.control[0].calls[seenCalls_] + "; " + served_;
    }
    return std::exchange(served_, {});
  }
  void Set(int kind, std::string& value, std::string text) {
    value = std::move(text);
    publication.SetVal(kind, 0);
  }

 private:
  void ItemsChanged(int, unsigned items) override { served_ += "dde " + std::to_string(items) + "; "; }
  void CUpdate() override { served_ += "event; "; }

  std::string served_;
  std::size_t seenCalls_ = 0;
};

TEST(PublicationTest, AValueGoesToEachOutletOnlyWhenItsTextChanges) {
  OutletPlant plant;
  Tables& t = plant.tables;
  const auto flushed = [&](const std::string& gross) {
    plant.Set(1, t.ChanGross[0], gross);
    plant.publication.Flush(0);
    return plant.Served();
  };
  EXPECT_EQ(flushed(" 10.0 kg"), "opc update; opc write 0; dde 1; ");
  EXPECT_EQ(std::get<double>(plant.opc.control[0].values[0]), 10.0);
  EXPECT_EQ(plant.Object().CGross, 10.0);
  EXPECT_EQ(t.ChanDirty[Item::Gross][0], True);
  EXPECT_EQ(flushed(" 10.0 kg"), "");
  EXPECT_EQ(flushed("10.00"), "opc update; opc write 0; ") << "the same number in another text is a change";
  EXPECT_EQ(flushed("no number"), "opc update; opc write 0; dde 1; ");
  EXPECT_EQ(plant.publication.Topics().Request(0, 0), "0");
}

TEST(PublicationTest, TheStatusWordGoesOutWithTheEventAndTheWeightsDoNot) {
  OutletPlant plant;
  plant.tables.ChanStatusBits[0] = 10;
  plant.publication.PublishStatus(0);
  plant.publication.PublishStatus(0);
  EXPECT_EQ(plant.Object().CScaleStat, 10);
  plant.publication.Flush(0);
  EXPECT_EQ(plant.Served(), "opc update; opc write 3; dde 8; event; ");
  EXPECT_EQ(std::get<std::int16_t>(plant.opc.control[0].values[3]), 10);
  plant.publication.Flush(0);
  EXPECT_EQ(plant.Served(), "");
}

TEST(PublicationTest, AFallOfflineIsStagedAgainAndMakesTheNextStreamPublishEverything) {
  OutletPlant plant;
  Tables& t = plant.tables;
  plant.Set(1, t.ChanGross[0], "10");
  t.ChanStatusBits[0] = 16;
  plant.publication.PublishStatus(0);
  plant.publication.Flush(0);
  plant.Served();
  plant.publication.RepublishOffline(0);
  plant.publication.Flush(0);
  EXPECT_EQ(plant.Served(), "opc update; opc write 3; ");
  EXPECT_EQ(plant.publication.Topics().Request(0, 0), "10") << "no zero is published";
  plant.publication.SetVal(1, 0);
  EXPECT_EQ(plant.Served(), "opc write 0; ");
}

TEST(PublicationTest, AnOpcControlThatFailsEndsTheTickAndIsServedAgainAtItsNextChange) {
  OutletPlant plant;
  plant.tables.ChanOpcPending[0] = True;
  plant.opc.control[0].updateError = 440;
  plant.Tick();
  EXPECT_EQ(plant.notice.boxes.size(), 1U);
  plant.opc.control[0].updateError = 0;
  plant.tables.ChanOpcPending[0] = True;
  plant.Tick();
  EXPECT_EQ(plant.notice.boxes.size(), 1U);
  EXPECT_EQ(plant.tables.ChanOpcBusy[0], False);
}

}  // namespace
