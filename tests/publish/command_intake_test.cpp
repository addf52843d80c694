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

  plant.ports.port[0].open = false;
  command(0);
  EXPECT_EQ(device.CCmdStat, 103);
  EXPECT_TRUE(plant.notice.boxes.empty());
}

}  // namespace
