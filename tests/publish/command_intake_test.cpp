#include "publish/command_intake.h"

#include <gtest/gtest.h>

#include "tests/support/test_plant.h"

namespace {

constexpr int kProto = 12;

TEST(CommandIntakeTest, ACommandWaitsForItsRowItsInterlockAndABidirectionalChannelButNotForAClosedPort) {
  TestPlant plant;
  Tables& t = plant.tables;
  plant.Connect(0, kProto);
  plant.manager.Publishing().BindDevices();
  Device& device = *plant.manager.Publishing().Devices().Objects().At(0);
  t.ProtoCmdText[0][0][kProto] = "T";
  t.ProtoCmdText[2][0][kProto] = "3";
  const std::vector<std::string>& sent = plant.ports.port[0].sent;
  const auto command = [&](int status) {
    device.CCmd = 3;
    device.CCmdStat = static_cast<std::int16_t>(status);
    device.CDoUpdate();
    plant.Tick();
  };
  command(0);
  EXPECT_EQ(device.CCmd, 3) << "nothing is taken from a channel that is not bidirectional";
  t.ChanBidirectional[0] = True;
  plant.Tick();
  EXPECT_EQ(t.ChanCmdState[0], 3);
  EXPECT_TRUE(sent.empty()) << "the row is not enabled";
  t.ProtoCmdEnabled[0][kProto] = True;
  plant.Tick();
  EXPECT_EQ(sent.size(), 1U);
  plant.Tick();
  EXPECT_EQ(sent.size(), 1U) << "a command is sent once";

  command(103);
  EXPECT_EQ(sent.size(), 1U) << "the client has not taken the last answer";
  t.CmdStatInterlock = False;
  plant.Tick();
  EXPECT_EQ(sent.size(), 2U);

  bool closed = false;
  t.ChanStatusText[0] = "Ready...";
  for (bool* hinders : {&plant.ports.port[0].refuses, &closed}) {
    *hinders = true;
    plant.ports.port[0].open = !closed;
    command(0);
    EXPECT_EQ(device.CCmdStat, 1003) << "nothing has left the machine";
    EXPECT_EQ(t.ChanStatusText[0], "Ready...");
  }
  EXPECT_NE(plant.LogText(LogType::Automation).find("Device: 0; Command Not Sent: 3"), std::string::npos);
  EXPECT_TRUE(plant.notice.boxes.empty());
}

TEST(CommandIntakeTest, ACommandThatWaitsForItsRowIsTakenBackInSpiteOfTheHandBackOfEveryVisit) {
  TestPlant plant;
  Tables& t = plant.tables;
  plant.Connect(0, kProto);
  plant.manager.Publishing().BindDevices();
  Device& device = *plant.manager.Publishing().Devices().Objects().At(0);
  t.ChanBidirectional[0] = True;
  t.ProtoCmdText[0][0][kProto] = "T";
  t.ProtoCmdText[2][0][kProto] = "3";
  device.CCmd = 3;
  device.CDoUpdate();
  plant.Tick();
  EXPECT_EQ(t.ChanCmdState[0], 3);
  device.CCmd = 0;
  plant.Tick();  // between the two steps of the client
  device.CDoUpdate();
  t.ProtoCmdEnabled[0][kProto] = True;
  plant.Tick();
  EXPECT_EQ(t.ChanCmdState[0], 0);
  EXPECT_TRUE(plant.ports.port[0].sent.empty());
}

TEST(CommandIntakeTest, AnOpcCommandIsTakenOnceHoweverLateItsAnswerReachesTheServer) {
  TestPlant plant;
  Tables& t = plant.tables;
  plant.Connect(0, kProto);
  t.ChanBidirectional[0] = t.ChanOpcEnabled[0] = True;
  t.ChanRefresh[0] = 1000;
  t.ProtoCmdText[0][0][kProto] = "T";
  t.ProtoCmdText[2][0][kProto] = "3";
  t.ProtoCmdEnabled[0][kProto] = True;
  MemoryOpcControl& opc = plant.opc.control[0];
  opc.Arrive(4, 3.0);
  t.ChanOpcBusy[0] = True;  // no update gets through
  for (int tick = 0; tick < 5; ++tick) plant.Tick();
  EXPECT_EQ(plant.ports.port[0].sent.size(), 1U);
  t.ChanOpcBusy[0] = False;
  plant.Tick();
  EXPECT_EQ(std::get<std::int16_t>(opc.Value(6)), 103);
  opc.Arrive(4, 3.0);
  opc.Arrive(6, std::int16_t{0});
  plant.Tick();
  EXPECT_EQ(plant.ports.port[0].sent.size(), 2U) << "the next command is taken";

  opc.Arrive(4, 31'768.0);
  opc.Arrive(6, std::int16_t{0});
  for (int tick = 0; tick < 3; ++tick) plant.Tick();
  EXPECT_EQ(std::get<std::int16_t>(opc.Value(4)), 0);
  EXPECT_EQ(std::get<std::int16_t>(opc.Value(6)), 0);
  const std::string log = plant.LogText(LogType::Opc);
  const std::size_t refusal = log.find("Device: 0; Refused OPC Command: 31768");
  EXPECT_NE(refusal, std::string::npos);
  EXPECT_EQ(log.find("Refused", refusal + 15), std::string::npos);
}

}  // namespace
