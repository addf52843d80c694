#include "config/setup/live_line.h"

#include "tests/config/setup_plant.h"

namespace {

using enum Control;

class LiveLineTest : public testing::Test {
 protected:
  LiveLineTest() {
    plant.channelSetup.Open(4);
    setup.SetIndex({cb, 3}, 10);
    setup.SetIndex({cb, 0}, 0);
    setup.SetText({t, 9}, "13");
    setup.SetText({t, 0}, "2");
    setup.SetText({t, 1}, "5");
    setup.SetValue({ck, 0}, 1);
  }
  LiveLine Look(std::optional<FieldId> focus = {}, const std::string& bytes = {}) {
    plant.ports.port[4].waiting += bytes;
    return plant.channelSetup.Look(focus);
  }

  SetupPlant plant;
  SetupModel& setup = plant.setup;
};

TEST_F(LiveLineTest, AStreamIsDecodedWithWhatIsTypedAndNothingOfItReachesTheTables) {
  Look();
  LiveLine line = Look({}, "S12.50G\r");
  EXPECT_EQ(line.stream, "S12.50G\r");
  EXPECT_EQ(line.value, "Gross_Wt 12.50");
  line = Look(FieldId{t, 1});
  EXPECT_EQ(std::pair(line.first, line.last), std::pair(2, 6));
  EXPECT_EQ(line.value, "Gross_Wt: \"12.50\" = 12.50");
  setup.SetText({t, 1}, "9");
  EXPECT_EQ(Look(FieldId{t, 0}).value, "Gross_Wt: the stream is too short");
  setup.SetText({t, 1}, "99999999999");
  EXPECT_NE(Look(FieldId{t, 0}).value.find("t(1)"), std::string::npos);
  setup.SetText({t, 1}, "5");

  setup.OpenEntry();
  EXPECT_EQ(Look(FieldId{te, 0}).value, "LB: no position yet");
  setup.SetIndex({cbStatus}, 21);
  setup.SetText({te, 0}, "7");
  setup.SetText({te, 1}, "1");
  setup.SetText({te, 2}, "71");
  line = Look(FieldId{te, 2});
  EXPECT_EQ(line.first, 7);
  EXPECT_EQ(line.value, "Gross Mode: matches");
  setup.SetText({te, 2}, "78");
  EXPECT_EQ(Look(FieldId{te, 2}).value, "Gross Mode: does not match, the bits say 71");
  EXPECT_EQ(plant.tables.ProtoGrossLen[10], 0);
  EXPECT_EQ(plant.tables.ChanGross[4], "");
}

TEST_F(LiveLineTest, ThePortFollowsWhatIsChosenAndIsGivenBack) {
  MemoryPort& port = plant.ports.port[4];
  plant.channelSetup.cmdCancel();
  port.commPort = 9;
  port.settings = "1200,N,7,1";
  plant.channelSetup.Open(4);
  setup.SetIndex({cb, 1}, 6);
  setup.SetIndex({cb, 2}, 38);
  Look();
  EXPECT_TRUE(port.open);
  EXPECT_EQ(port.commPort, 7);
  EXPECT_EQ(port.settings, "19200,E,7,1");
  setup.SetIndex({cb, 1}, 7);
  port.openError = ErrorNumber::SerialPortInUse;
  EXPECT_EQ(Look().notice, "COM8 cannot be opened");
  port.openError = 0;
  Look();
  EXPECT_FALSE(port.open) << "not before a second has passed";
  plant.system.millisecond += 1000;
  Look();
  EXPECT_TRUE(port.open);
  setup.SetIndex({cb, 0}, 1);
  Look();
  EXPECT_FALSE(port.open) << "a terminal has no port";
  plant.channelSetup.cmdCancel();
  EXPECT_EQ(port.commPort, 9);
  EXPECT_EQ(port.settings, "1200,N,7,1");
}

TEST_F(LiveLineTest, TheLastStreamStandsUntilItsLineCannotBeHad) {
  plant.channelSetup.cmdCancel();
  plant.tables.ChanStream[5] = "S12.50G\r";
  plant.channelSetup.Open(5);
  EXPECT_EQ(Look().stream, "S12.50G\r");
  plant.ports.port[5].open = false;
  plant.ports.port[5].openError = 8002;
  plant.system.millisecond += 2000;
  EXPECT_EQ(Look().stream, "");
}

TEST_F(LiveLineTest, BytesWithoutATerminatorAreShownAsTheyCome) {
  Look();
  EXPECT_EQ(Look({}, "12.501").stream, "12.501");
  EXPECT_EQ(Look({}, "\r").value, "Gross_Wt 2.501");
  setup.SetText({t, 9}, "3");
  EXPECT_EQ(Look().stream, "") << "what was cut before is no stream of this framing";
}

}  // namespace
