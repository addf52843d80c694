#include "publish/publication.h"

#include <gtest/gtest.h>

#include "tests/support/test_plant.h"

namespace {

TEST(PublicationTest, AnOpcControlThatFailsEndsTheTickAndIsServedAgainAtItsNextChange) {
  TestPlant plant;
  plant.Connect(0, 2);
  plant.tables.ChanOpcEnabled[0] = True;
  for (const int error : {440, 0}) {
    plant.tables.ChanOpcPending[0] = True;
    plant.opc.control[0].updateError = error;
    plant.Tick();
    EXPECT_EQ(plant.notice.boxes.size(), 1U);
    EXPECT_EQ(plant.opc.control[0].calls.back(), "update");
    EXPECT_EQ(plant.tables.ChanOpcBusy[0], False);
  }
}

}  // namespace
