#include <gtest/gtest.h>

#include "tests/support/test_plant.h"

namespace {

constexpr int kProto = 12;

/// A channel whose stream is six digits of weight and a CR, the weight being gross, or net behind an "N".
struct ScalePlant : TestPlant {
  explicit ScalePlant(int ch = 0) {
    tables.ProtoTerminator[kProto] = 13;
    for (auto* field : {&tables.ProtoGrossPos, &tables.ProtoNetPos}) (*field)[kProto] = 2;
    for (auto* field : {&tables.ProtoGrossLen, &tables.ProtoNetLen}) (*field)[kProto] = 6;
    for (auto* field : {&tables.ProtoGrossEnable, &tables.ProtoNetEnable}) (*field)[kProto] = True;
    AddStatusRow(kProto, {"Net Mode", "2 / MODE", "1", "1", "78", "X"});
    AddStatusRow(kProto, {"Overload", "0 / ERROR", "1", "1", "69", "X"});
    Connect(ch, kProto);
  }
};

TEST(ReceptionTest, FieldsReachToTheEdgeOfTheirStreamAndNoFurther) {
  const std::tuple<int, int, std::string> cases[] = {{2, 6, "123456"},     {1, 6, " 12345"}, {0, 6, " 12345"},
                                                     {3, 6, "0"},          {-1, 3, " 12"},   {2, 2147483647, "0"},
                                                     {2147483647, 6, "0"}, {2, 0, ""},       {2, -4, ""}};
  for (const auto& [position, length, gross] : cases) {
    ScalePlant plant;
    plant.tables.ProtoGrossPos[kProto] = position;
    plant.tables.ProtoGrossLen[kProto] = length;
    plant.Tick(0, " 123456\r");
    EXPECT_EQ(plant.tables.ChanGross[0], gross) << position << ", " << length;
  }
}

TEST(ReceptionTest, AnUnsetStreamLengthAndTerminatorAreWrittenBackAtTheFirstUse) {
  ScalePlant plant;
  plant.tables.ProtoTerminator[kProto] = 0;
  plant.Tick(0, std::string(60, 'x'));
  EXPECT_EQ(plant.tables.ProtoMaxStream[kProto], 48);
  EXPECT_EQ(plant.tables.ProtoTerminator[kProto], 10);
  EXPECT_EQ(plant.tables.ChanRxBuffer[0], std::string(48, 'x'));
}

TEST(ReceptionTest, ATerminatorThatIsNoCharacterEndsNoStream) {
  for (int code : {269, -243, 1310}) {  // 269 and -243 are a CR as far as the lowest eight bits go
    ScalePlant plant;
    plant.tables.ProtoTerminator[kProto] = code;
    plant.Tick(0, " 123456\r\x1E");
    EXPECT_EQ(plant.tables.ChanGross[0], "") << code;
    EXPECT_EQ(plant.tables.ChanStatusText[0], "");
  }
}

TEST(ReceptionTest, AFaultInAStreamLeavesNothingOfItToTheNext) {
  ScalePlant plant;
  plant.tables.ChanAsciiLog[0] = True;
  plant.tables.ChanAsciiLogName[0] = "/plant/w.txt";
  plant.files.broken["/plant/w.txt"] = ErrorNumber::DiskFull;
  plant.Tick(0, "N    12\r");
  EXPECT_EQ(plant.notice.boxes.size(), 1U);
  EXPECT_EQ(plant.tables.ChanMode[0], "");
  plant.Tick(0, "     12\r");
  EXPECT_EQ(plant.notice.boxes.size(), 1U) << "a full disk is told once";
  EXPECT_EQ(plant.tables.ChanNet[0], "0");
  EXPECT_EQ(plant.tables.ChanGross[0], "    12");

  plant.files.broken.clear();
  plant.Tick(0, "     13\r");
  EXPECT_EQ(plant.files.content["/plant/w.txt"], "2026-01-02 03:04:05 Device #: 0,     13, 0, 0, , \r\n");
  plant.files.broken["/plant/w.txt"] = ErrorNumber::DiskFull;
  plant.Tick(0, "     14\r");
  EXPECT_EQ(plant.tables.ChanGross[0], "    14") << "the weight itself is true";
}

TEST(ReceptionTest, NeitherHalvesOfAnOutageNorBareTerminatorsMakeAWeight) {
  ScalePlant plant;
  plant.tables.ChanTimeout[0] = 5;
  plant.Tick(0, " 123456\r");
  for (int tick = 0; tick < 10; ++tick) plant.Tick();
  plant.Tick(0, " 111");  // arrives while the channel is offline already
  for (int tick = 0; tick < 10; ++tick) plant.Tick();
  plant.Tick(0, "999\r");
  EXPECT_NE(plant.tables.ChanGross[0], "111999");
  plant.tables.ProtoStartChar[kProto] = ' ';
  plant.Tick(0, " 123456\r");
  for (int tick = 0; tick < 20; ++tick) plant.Tick(0, tick % 4 == 0 ? "\r" : "");
  EXPECT_EQ(plant.tables.ChanStatusText[0], "Offline...") << "no stream has ended for longer than the time-out";
}

TEST(ReceptionTest, AChannelWithoutATimeOutNeverFallsOffline) {
  for (const int timeout : {0, -1}) {
    ScalePlant plant;
    plant.tables.ChanTimeout[0] = timeout;
    plant.Tick(0, "     12\r");
    for (int tick = 0; tick < 100; ++tick) plant.Tick();
    EXPECT_EQ(plant.tables.ChanStatusText[0], "Online...") << timeout;
  }
}

}  // namespace
