#include <limits>

#include "tests/platform/dbus/bus_test.h"

namespace {

using Signals = std::vector<BusClient::Heard>;

class DeviceFaceTest : public BusTest {
 protected:
  void SetUp() override { StartOnBus(); }
};

TEST_F(DeviceFaceTest, TheConnectorHandsOutDevices0To32AndNoOther) {
  BusClient client;
  const std::string subscript = "org.tarvex.Error.Subscript";
  for (const auto& [index, device, error] : {std::tuple{0, "/org/tarvex/Device/0", std::string()},
                                             {32, "/org/tarvex/Device/32", ""},
                                             {33, "", subscript},
                                             {-1, "", subscript}}) {
    const auto answer = client.Call("/org/tarvex/Connector", "org.tarvex.Connector", "Device", "n", index);
    const char* path = "";
    answer.Read("o", &path);
    EXPECT_STREQ(path, device) << index;
    EXPECT_EQ(answer.error, error) << index;
  }
  EXPECT_EQ(client.Word(kScale, "CCmd"), 0) << "a refused index ends nothing";
}

TEST_F(DeviceFaceTest, EveryFieldKeepsWhatAClientWritesAndRefusesAnotherType) {
  BusClient client;
  const std::pair<const char*, const char*> fields[] = {{"CDeviceID", "i"},  {"CCmd", "n"},     {"CCmdStat", "n"},
                                                        {"CScaleStat", "n"}, {"CCmdParm", "d"}, {"CGross", "d"},
                                                        {"CTare", "d"},      {"CNet", "d"},     {"CDeviceDesc", "s"}};
  for (const auto& [field, type] : fields) {
    const bool text = *type == 's', number = *type == 'd';
    const auto right = text     ? client.Set(kSpare, field, type, "-12")
                       : number ? client.Set(kSpare, field, type, -12.5)
                                : client.Set(kSpare, field, type, -12);
    EXPECT_EQ(right.error, "") << field;
    const auto wrong = number ? client.Set(kSpare, field, "n", -12) : client.Set(kSpare, field, "d", -12.5);
    EXPECT_EQ(wrong.error, "org.freedesktop.DBus.Error.InvalidArgs") << field;
  }
  const Device& device = *plant_.manager.Publishing().Devices().Objects().At(32);
  EXPECT_EQ(device.CDeviceID + device.CCmd + device.CCmdStat + device.CScaleStat, 4 * -12);
  EXPECT_EQ(device.CCmdParm + device.CGross + device.CTare + device.CNet, 4 * -12.5);
  EXPECT_EQ(device.CDeviceDesc, "-12");
}

TEST_F(DeviceFaceTest, AValueBeyondItsLimitIsRefusedWithAReasonAndNothingIsStored) {
  BusClient client;
  const auto refused = [](const BusClient::Answer& answer, std::string_view field, std::string_view limit) {
    if (answer.error != "org.freedesktop.DBus.Error.InvalidArgs") return false;
    const std::string_view reason = sd_bus_message_get_error(answer.message.get())->message;
    return reason.find(field) != reason.npos && reason.find(limit) != reason.npos && reason.size() < 200;
  };
  const std::string longest = std::string(1020, 'x') + "\u00e4\u20ac\U0001F600\u00df";  // 2, 3, 4 and 2 bytes
  for (const auto& [path, property] : {std::pair{kSpare, "CDeviceDesc"},
                                       {kTopic, "Gross"},
                                       {kTopic, "Tare"},
                                       {kTopic, "Net"},
                                       {kTopic, "ScaleStat"},
                                       {kTopic, "Cmd"},
                                       {kTopic, "CmdParm"},
                                       {kTopic, "CmdStat"}}) {
    EXPECT_EQ(client.Set(path, property, "s", longest.c_str()).error, "") << property;
    const auto answer = client.Set(path, property, "s", ("-" + longest).c_str());
    EXPECT_TRUE(refused(answer, property, "1024 characters")) << property;
    EXPECT_EQ(client.Text(path, property), longest) << property;
  }
  plant_.manager.Publishing().Devices().Objects().At(32)->CDeviceDesc = longest + "from a file";
  EXPECT_EQ(client.Text(kSpare, "CDeviceDesc"), longest);
  for (const int code : {-32768, -1, 31767}) {
    EXPECT_EQ(client.Set(kSpare, "CCmd", "n", code).error, "");
    for (const int high : {31768, 32767}) EXPECT_TRUE(refused(client.Set(kSpare, "CCmd", "n", high), "CCmd", "31767"));
    EXPECT_EQ(client.Word(kSpare, "CCmd"), code);
  }
  const std::string name(100'000, 'x'), path = "/" + name.substr(0, 20'000);
  const char* const properties = "org.freedesktop.DBus.Properties";
  EXPECT_TRUE(refused(client.Call(kSpare, properties, "GetAll", "s", name.c_str()), "name", "255"));
  EXPECT_TRUE(refused(client.Call(kSpare, properties, "Get", "ss", "org.tarvex.Device", name.c_str()), "name", "255"));
  EXPECT_TRUE(refused(client.Call(path, "org.freedesktop.DBus.Peer", "Ping"), "path", "255"));
}

TEST_F(DeviceFaceTest, AVisitAnnouncesOnceAllFieldsThatItWroteAndASteadyWeightNothing) {
  BusClient client;
  client.Listen();
  plant_.Tick(0, "  12.50\r");
  const std::string all = "CGross CTare CNet CScaleStat";  // a command state that has not changed is not written
  EXPECT_EQ(Heard(client), (Signals{{kScale, all}, {kScale, "CUpdate"}}));
  plant_.Tick(0, "  13.00\r");
  EXPECT_EQ(Heard(client), (Signals{{kScale, "CGross"}}));
  plant_.Tick(0, "  13.00\r");
  EXPECT_EQ(Heard(client), Signals{});
  EXPECT_EQ(client.Number(kScale, "CGross"), 13);
}

TEST_F(DeviceFaceTest, ACommandGoesToTheDeviceAndItsAnswerIsThereWhenTheEventComes) {
  BusClient client, other;
  client.Listen();
  other.Listen();
  SendCommand(client, 3, 12.5);
  const Signals taken = {{kScale, "CCmd"}, {kScale, "CCmdParm"}, {kScale, "CCmdStat"}, {kScale, "CUpdate"}};
  EXPECT_EQ(Heard(client), taken);
  EXPECT_TRUE(plant_.ports.port[0].sent.empty()) << "only a visit of the channel sends";
  plant_.Tick();
  EXPECT_EQ(plant_.ports.port[0].sent, std::vector<std::string>{"T12.5X"});
  const Signals answered = {{kScale, "CCmd CCmdParm CCmdStat"}, {kScale, "CUpdate"}};
  EXPECT_EQ(Heard(client), answered);
  EXPECT_EQ(client.Word(kScale, "CCmdStat"), 103);
  EXPECT_EQ(Heard(other).size(), taken.size() + answered.size()) << "two clients hear the same";
}

TEST_F(DeviceFaceTest, AVisitTellsTheLinksOfATopicOnceOfAllItemsThatChangedAndAPokeIsNoCommand) {
  BusClient client;
  plant_.tables.ChanDdeServer[0] = True;
  plant_.Tick(0, "  12.50\r");
  client.Listen();
  plant_.Tick(0, " -13.00\r");
  EXPECT_EQ(Heard(client), (Signals{{kTopic, "Gross"}, {kScale, "CGross"}}));
  EXPECT_EQ(client.Text(kTopic, "Gross"), "-13");
  EXPECT_EQ(client.Set(kTopic, "Cmd", "s", "3").error, "");
  EXPECT_EQ(Heard(client), (Signals{{kTopic, "Cmd"}}));
  plant_.Tick();
  EXPECT_TRUE(plant_.ports.port[0].sent.empty());
}

}  // namespace
