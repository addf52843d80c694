#include "publish/command_intake.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/support/test_plant.h"

namespace {

constexpr int kProto = 12;
const std::string kStamp = "2026-01-02 03:04:05 @ ";

struct CommandPlant : TestPlant {
  CommandPlant() {
    Connect(0, kProto);
    tables.ChanBidirectional[0] = True;
    tables.ChanRefresh[0] = 1000;
    AddCommand(0, "T", "Tare", "3", True);
    AddCommand(1, "W~~~~X", "Set", "5.0", True);
    AddCommand(2, "N~", "Preset", "6", True);
    AddCommand(3, "P", "Print", "7", False);
    AddCommand(4, "Q", "Print Again", "7", True);
    manager.Publishing().BindDevices();
  }
  void AddCommand(int row, const std::string& text, const std::string& name, const std::string& code, Boolean enabled) {
    tables.ProtoCmdText[0][row][kProto] = text;
    tables.ProtoCmdText[1][row][kProto] = name;
    tables.ProtoCmdText[2][row][kProto] = code;
    tables.ProtoCmdEnabled[row][kProto] = enabled;
  }
  Device& Object() { return *manager.Publishing().Devices().Objects().At(0); }
  std::vector<std::string>& Sent() { return ports.port[0].sent; }
  void Send(int code, double parameter, int status = 0) {
    Object().CCmd = static_cast<std::int16_t>(code);
    Object().CCmdParm = parameter;
    Object().CCmdStat = static_cast<std::int16_t>(status);
    Object().CDoUpdate();
    Tick();
  }
};

TEST(CommandIntakeTest, ACodeIsTranslatedSentLoggedAndAnswered) {
  struct Case {
    int code;
    double parameter;
    std::string sent, caption;
    bool lamp;
  };
  const Case cases[] = {{3, 0, "T", "Tare", true}, {5, 12.5, "W12.5X", "", false}, {6, 12, "N2", "2  Preset", true}};
  for (const Case& c : cases) {
    CommandPlant plant;
    plant.Send(c.code, c.parameter);
    EXPECT_EQ(plant.Sent(), std::vector<std::string>{c.sent});
    EXPECT_EQ(plant.tables.ChanStatusText[0], c.caption);
    EXPECT_EQ(plant.tables.ChanIndicator[Item::Tx][0] == True, c.lamp);
    EXPECT_EQ(plant.Object().CCmd, 0);
    EXPECT_EQ(plant.Object().CCmdStat, c.code + 100);
    EXPECT_EQ(plant.tables.ChanPrevGross[0], "-999999");
    EXPECT_NE(plant.LogText(LogType::Automation).find("Device: 0; Rcvd ActiveX Command: "), std::string::npos);
    plant.Tick();
    EXPECT_EQ(plant.Sent().size(), 1U) << "a command is sent once";
  }
}

TEST(CommandIntakeTest, AnUnknownCodeIsRefusedWithoutALineOrAByte) {
  CommandPlant plant;
  plant.Send(4, 0);
  EXPECT_EQ(plant.Object().CCmdStat, 1004);
  EXPECT_EQ(plant.tables.ChanCmdState[0], 0);
  plant.Send(3, std::numeric_limits<double>::infinity());
  EXPECT_EQ(plant.Object().CCmdStat, 1003) << "a parameter that is no number";
  EXPECT_TRUE(plant.Sent().empty());
  EXPECT_EQ(plant.LogText(LogType::Automation), "");
}

TEST(CommandIntakeTest, TheFirstRowOfACodeDecidesAndADisabledOneBlocksUntilItIsEnabled) {
  CommandPlant plant;
  plant.Send(7, 0);
  for (int visit = 0; visit < 3; ++visit) {
    plant.tables.ChanPrevGross[0] = "12";
    plant.Tick();
    EXPECT_EQ(plant.tables.ChanPrevGross[0], "-999999") << "forced republication at each visit";
  }
  EXPECT_TRUE(plant.Sent().empty());
  EXPECT_EQ(plant.tables.ChanCmdState[0], 7);
  EXPECT_EQ(plant.Object().CCmdStat, 0);
  plant.tables.ProtoCmdEnabled[3][kProto] = True;
  plant.Tick();
  EXPECT_EQ(plant.Sent(), std::vector<std::string>{"P"});
}

TEST(CommandIntakeTest, TheInterlockHoldsACommandUntilItsStatusIsCleared) {
  CommandPlant plant;
  plant.Send(3, 0, 103);
  EXPECT_TRUE(plant.Sent().empty());
  EXPECT_EQ(plant.tables.ChanCmdState[0], 3);
  plant.tables.ChanCmdStatus[0] = 0;
  plant.Tick();
  EXPECT_EQ(plant.Sent().size(), 1U);
  plant.tables.CmdStatInterlock = False;
  plant.Send(3, 0, 103);
  EXPECT_EQ(plant.Sent().size(), 2U);
}

TEST(CommandIntakeTest, NothingIsTakenFromAChannelThatIsNotBidirectionalOrSentToAClosedPort) {
  CommandPlant plant;
  plant.tables.ChanBidirectional[0] = False;
  plant.Send(3, 0);
  EXPECT_TRUE(plant.Sent().empty());
  EXPECT_EQ(plant.Object().CCmd, 3);
  plant.tables.ChanBidirectional[0] = True;
  plant.ports.port[0].open = false;
  plant.Tick();
  EXPECT_EQ(plant.Object().CCmdStat, 103);
  EXPECT_TRUE(plant.notice.boxes.empty());
}

TEST(CommandIntakeTest, BothSourcesAreServedInOneVisitAutomationFirst) {
  CommandPlant plant;
  plant.tables.ChanOpcEnabled[0] = True;
  auto& items = plant.opc.control[0].values;
  items[4] = std::string("5");
  items[5] = 1234.5;
  plant.Send(3, 0);
  EXPECT_EQ(plant.Sent(), (std::vector<std::string>{"T", "W34.5X"}));
  EXPECT_EQ(std::get<std::int16_t>(items[4]), 0);
  EXPECT_EQ(std::get<std::int16_t>(items[6]), 105);
  EXPECT_EQ(plant.opc.control[0].calls.back(), "update");
  EXPECT_EQ(plant.LogText(LogType::Opc), kStamp + "Device: 0; Rcvd OPC Command: 5  Parm: 1234.5   Stat: \r\n");
}

TEST(CommandIntakeTest, AnAnswerThatDoesNotFitSixteenBitsIsAnOverflowInTheTrap) {
  CommandPlant plant;
  plant.AddCommand(5, "Z", "Zero", "32700", True);
  plant.Send(32700, 0);
  ASSERT_EQ(plant.notice.boxes.size(), 1U);
  EXPECT_NE(plant.notice.boxes[0].text.find("6  Overflow: CCmdStat 32800"), std::string::npos);
  EXPECT_EQ(plant.Sent(), std::vector<std::string>{"Z"});
  plant.Tick();
  EXPECT_EQ(plant.notice.boxes.size(), 1U);
}

}  // namespace
