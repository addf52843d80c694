#include "publish/publication.h"

#include <gtest/gtest.h>

#include "tests/support/test_plant.h"

namespace {

TEST(PublicationTest, AnOpcControlThatFailsEndsTheTickAndIsServedAgainAtItsNextChange) {
  TestPlant plant;
  plant.Connect(0, 2);
  plant.tables.ChanOpcEnabled[0] = True;
  int exchanges = 0;
  plant.opc.control[0].onUpdate = [&] {
    if (++exchanges == 1) throw RunTimeError(440, "The OPC server is gone");
  };
  for (int visit = 1; visit <= 2; ++visit) {
    plant.tables.ChanOpcPending[0] = True;
    plant.Tick();
    EXPECT_EQ(plant.notice.boxes.size(), 1U);
    EXPECT_EQ(exchanges, visit);
    EXPECT_EQ(plant.tables.ChanOpcBusy[0], False);
  }
}

}  // namespace
