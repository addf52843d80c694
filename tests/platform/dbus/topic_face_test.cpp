#include <set>

#include "tests/platform/dbus/bus_test.h"

namespace {

using Signals = std::vector<BusClient::Heard>;

class TopicFaceTest : public BusTest {
 protected:
  void SetUp() override {
    StartOnBus();
    plant_.tables.ChanDdeServer[0] = True;
  }
};

TEST_F(TopicFaceTest, ThereAre25TopicsBecauseEightFormsShareTheFirst) {
  BusClient client;
  const char* xml = "";
  const auto children = client.Call("/org/tarvex/dde", "org.freedesktop.DBus.Introspectable", "Introspect");
  ASSERT_TRUE(children.Read("s", &xml));
  const std::string nodes = xml;
  std::size_t topics = 0;
  for (int form = 0; form < 32; ++form) {
    const bool missing = form == 1 || (form >= 4 && form <= 9);
    const bool there = nodes.find("<node name=\"DDEForm" + std::to_string(form) + "\"/>") != std::string::npos;
    EXPECT_EQ(there, !missing) << form;
    topics += there ? 1 : 0;
  }
  EXPECT_EQ(topics, 25U);
}

TEST_F(TopicFaceTest, AVisitTellsALinkOnceOfAllItemsThatChanged) {
  BusClient client;
  plant_.Tick(0, "  12.50\r");
  client.Listen();
  plant_.tables.ChanConnected[1] = False;
  plant_.Tick(0, " -13.00\r");
  EXPECT_EQ(Heard(client), (Signals{{kTopic, "Gross"}, {kScale, "CGross"}}));
  EXPECT_EQ(client.Text(kTopic, "Gross"), "-13");
  EXPECT_EQ(client.Text(kTopic, "Tare"), "0");
  EXPECT_EQ(client.Text(kTopic, "ScaleStat"), "0");
  EXPECT_EQ(client.Text(kTopic, "CmdStat"), "");
}

TEST_F(TopicFaceTest, ThePokeOfAClientStandsUntilTheNextUpdateAndIsNoCommand) {
  BusClient client, linked;
  linked.Listen();
  EXPECT_EQ(client.Set(kTopic, "Cmd", "s", "3").error, "");
  EXPECT_EQ(client.Set(kTopic, "Gross", "s", "heavy").error, "");
  EXPECT_EQ(Heard(linked), (Signals{{kTopic, "Cmd"}, {kTopic, "Gross"}})) << "links hear of a poke too";
  plant_.Tick();
  EXPECT_EQ(client.Text(kTopic, "Cmd"), "3");
  EXPECT_TRUE(plant_.ports.port[0].sent.empty());
  plant_.Tick(0, "   1.00\r");
  EXPECT_EQ(client.Text(kTopic, "Cmd"), "");
  EXPECT_EQ(client.Text(kTopic, "Gross"), "1");
}

TEST_F(TopicFaceTest, AFormWithoutATopicOfItsOwnTellsNobody) {
  BusClient client;
  client.Listen();
  plant_.Connect(1, kProtocol);
  plant_.tables.ChanDdeServer[1] = True;
  plant_.Tick(1, "  12.50\r");
  for (const auto& heard : Heard(client)) EXPECT_EQ(heard.path.find("/dde/"), std::string::npos) << heard.path;
  EXPECT_EQ(client.Text(kTopic, "Gross"), "") << "channel 0 answers on the shared topic";
}

}  // namespace
