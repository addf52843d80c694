#include <cmath>
#include <limits>

#include "tests/platform/dbus/bus_test.h"

namespace {

using Signals = std::vector<BusClient::Heard>;

class DeviceFaceTest : public BusTest {
 protected:
  void SetUp() override { StartOnBus(); }
};

TEST_F(DeviceFaceTest, TheConnectorHandsOutDevices0To32AndNoOther) {
  BusClient client, bystander;
  struct Case {
    int index;
    const char* path;
    const char* error;
  };
  for (const Case& device : {Case{0, "/org/tarvex/Device/0", ""}, Case{31, "/org/tarvex/Device/31", ""},
                             Case{32, "/org/tarvex/Device/32", ""}, Case{33, "", "org.tarvex.Error.Subscript"},
                             Case{-1, "", "org.tarvex.Error.Subscript"}}) {
    const auto answer = client.Call("/org/tarvex/Connector", "org.tarvex.Connector", "Device", "n", device.index);
    const char* path = "";
    answer.Read("o", &path);
    EXPECT_STREQ(path, device.path) << device.index;
    EXPECT_EQ(answer.error, device.error) << device.index;
  }
  EXPECT_TRUE(bystander.SeesManager());
  EXPECT_EQ(client.Word(kScale, "CCmd"), 0) << "a refused index ends nothing";
}

TEST_F(DeviceFaceTest, EveryFieldKeepsWhatAClientWritesAndRefusesAnotherType) {
  struct Field {
    const char* name;
    const char* type;
  };
  BusClient client;
  for (const Field& field : {Field{"CDeviceID", "i"}, Field{"CCmd", "n"}, Field{"CCmdStat", "n"},
                             Field{"CScaleStat", "n"}, Field{"CCmdParm", "d"}, Field{"CGross", "d"},
                             Field{"CTare", "d"}, Field{"CNet", "d"}, Field{"CDeviceDesc", "s"}}) {
    const std::string type = field.type;
    for (const char* sent : {"n", "i", "x", "d", "s", "b"}) {
      SCOPED_TRACE(std::string(field.name) + " as " + sent);
      const std::string shape = sent;
      const auto answer = shape == "d"   ? client.Set(kSpare, field.name, sent, -12.5)
                          : shape == "s" ? client.Set(kSpare, field.name, sent, "-12")
                          : shape == "x" ? client.Set(kSpare, field.name, sent, std::int64_t{-12})
                                         : client.Set(kSpare, field.name, sent, -12);
      EXPECT_EQ(answer.error, shape == type ? "" : "org.freedesktop.DBus.Error.InvalidArgs");
    }
    if (type == "d") {
      EXPECT_EQ(client.Number(kSpare, field.name), -12.5);
    } else if (type == "n") {
      EXPECT_EQ(client.Word(kSpare, field.name), -12);
    } else if (type == "i") {
      EXPECT_EQ(client.Get<std::int32_t>(kSpare, field.name, "i"), -12);
    } else {
      EXPECT_EQ(client.Text(kSpare, field.name), "-12");
    }
  }
}

TEST_F(DeviceFaceTest, AVisitAnnouncesOnceAllFieldsThatItWroteAndASteadyWeightNothing) {
  BusClient client;
  client.Listen();
  plant_.Tick(0, "  12.50\r");
  const std::string all = "CCmd CCmdParm CCmdStat CGross CTare CNet CScaleStat";
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

TEST_F(DeviceFaceTest, FieldsWrittenWithoutCDoUpdateMoveNothingAndTheLastWriterWins) {
  BusClient first, second;
  first.Set(kScale, "CCmd", "n", 3);
  plant_.Tick();
  EXPECT_TRUE(plant_.ports.port[0].sent.empty());
  second.Set(kScale, "CCmd", "n", 77);
  first.Call(kScale, "org.tarvex.Device", "CDoUpdate");
  plant_.Tick();
  EXPECT_EQ(first.Word(kScale, "CCmdStat"), 1077);
}

TEST_F(DeviceFaceTest, TheSpareObjectRaisesItsEventAndFeedsNoChannel) {
  BusClient client;
  client.Listen();
  client.Call(kSpare, "org.tarvex.Device", "CDoUpdate");
  EXPECT_EQ(Heard(client), (Signals{{kSpare, "CUpdate"}}));
}

TEST_F(DeviceFaceTest, AParameterThatIsNoNumberIsRefusedAndNotSent) {
  BusClient client;
  for (const double parameter : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
                                 -std::numeric_limits<double>::infinity()}) {
    SendCommand(client, 3, parameter);
    plant_.Tick();
    EXPECT_EQ(client.Word(kScale, "CCmdStat"), 1003) << parameter;
  }
  EXPECT_TRUE(plant_.ports.port[0].sent.empty());
}

TEST_F(DeviceFaceTest, ACodeWhoseAnswerDoesNotFit16BitsCostsOneTickAndTheNextCommandWorks) {
  BusClient client;
  SendCommand(client, 32767, 0);
  plant_.Tick();
  EXPECT_NE(plant_.LogText(LogType::Error).find("Critical Error: 6"), std::string::npos);
  const std::size_t boxes = plant_.notice.boxes.size();
  plant_.Tick();
  EXPECT_EQ(plant_.notice.boxes.size(), boxes);
  SendCommand(client, 3, 1);
  plant_.Tick();
  EXPECT_EQ(client.Word(kScale, "CCmdStat"), 103);
}

TEST_F(DeviceFaceTest, TextsOfAnyBytesReachTheBusAsUtf8) {
  BusClient client;
  const auto device = plant_.manager.Publishing().Devices().Objects().At(0);
  struct Case {
    std::string inside;
    std::string outside;
  };
  for (const Case& text : {Case{"Tank 3", "Tank 3"}, Case{"K\xC3\xBChler", "K\xC3\xBChler"},
                           Case{"K\xFChler", "K\xC3\xBChler"}, Case{std::string("a\0b", 3), "a b"}}) {
    device->CDeviceDesc = text.inside;
    EXPECT_EQ(client.Text(kScale, "CDeviceDesc"), text.outside);
  }
}

TEST_F(DeviceFaceTest, BusToolsSeeAllObjectsAndTheirMembers) {
  BusClient client;
  const char* xml = "";
  const auto children = client.Call("/org/tarvex/Device", "org.freedesktop.DBus.Introspectable", "Introspect");
  ASSERT_TRUE(children.Read("s", &xml));
  for (int index = 0; index <= 32; ++index) {
    EXPECT_NE(std::string(xml).find("<node name=\"" + std::to_string(index) + "\"/>"), std::string::npos) << index;
  }
  const auto members = client.Call(kScale, "org.freedesktop.DBus.Introspectable", "Introspect");
  ASSERT_TRUE(members.Read("s", &xml));
  for (const char* member : {"<method name=\"CDoUpdate\"", "<signal name=\"CUpdate\"",
                             "<property name=\"CScaleStat\" type=\"n\" access=\"readwrite\""}) {
    EXPECT_NE(std::string(xml).find(member), std::string::npos) << xml;
  }
}

}  // namespace
