#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>

#include <QCoreApplication>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>

#include "platform/opcua/opcua_controls.h"
#include "platform/run_time_error.h"
#include "tests/platform/machine.h"
#include "tests/platform/opcua/opc_server_process.h"

namespace {

enum Tag { Gross, Tare, Net, Stat, Cmd, CmdParm, CmdStat };
constexpr const char* kNames[] = {"GROSS", "TARE", "NET", "SCALESTAT", "CMD", "CMDPARM", "CMDSTAT"};

std::string TagName(int scale, int item) { return "SCALE_" + std::to_string(scale) + "/" + kNames[item] + ".CV"; }

class OpcUaTest : public testing::Test {
 protected:
  /// A client of its own, with the helper in `helperFolder`.
  void StartClient(const std::string& helperFolder = OPC_HELPER) {
    controls_.emplace(
        OpcUaControls::Hooks{
            .certificateFolder = [this] { return folder_ / "client"; },
            .serverOf =
                [this](const std::string& name, const std::string&) {
                  if (!server_.endpoint.empty()) return server_;
                  throw RunTimeError(ErrorNumber::TypeMismatch, name + " is no server");
                },
            .report = [this](int ch, const std::string& text) { log_.push_back(std::to_string(ch) + ": " + text); }},
        helperFolder);
  }
  /// Connects scale `ch` + 1 with all its tags, or with those of `names` by item.
  OpcControl& Connect(int ch, const std::string& endpoint, const std::map<int, std::string>& names = {}) {
    server_.endpoint = endpoint;
    OpcControl& control = controls_->Control(ch);
    control.SetServerName("plant");
    control.Connect();
    for (int item = Gross; item <= CmdStat; ++item) {
      const auto name = names.find(item);
      if (name != names.end() && name->second.empty()) continue;
      control.AddTag(static_cast<std::int16_t>(item), name != names.end() ? name->second : TagName(ch + 1, item));
    }
    control.CreateGroup();
    return control;
  }
  void Publish(OpcControl& control, double gross, int status = 0) {
    control.SetValue(Gross, gross);
    control.SetValue(Stat, static_cast<std::int16_t>(status));
    control.Update();
  }
  bool Logged(const std::string& part) const { return TimesLogged(part) > 0; }
  std::ptrdiff_t TimesLogged(const std::string& part) const {
    return std::ranges::count_if(log_, [&](const std::string& line) { return line.find(part) != std::string::npos; });
  }
  /// Kills the helper that has been started with `folder`.
  static bool KillHelper(const std::string& folder) {
    for (const auto& process : std::filesystem::directory_iterator("/proc")) {
      std::ifstream file(process.path() / "cmdline");
      const std::string words((std::istreambuf_iterator<char>(file)), {});
      const int number = std::atoi(process.path().filename().c_str());
      if (number > 0 && words.find("helper.js") != words.npos && words.find(folder) != words.npos) {
        return kill(number, SIGKILL) == 0;
      }
    }
    return false;
  }
  /// The update is repeated, as a bidirectional channel does, until the server's value is known.
  bool Arrives(OpcControl& control, int item, double value) {
    return Soon([&] {
      control.Update();
      const OpcValue known = control.Value(static_cast<std::int16_t>(item));
      return std::holds_alternative<double>(known) && std::get<double>(known) == value;
    });
  }

  void TearDown() override {
    for (const std::string& line : log_)
      if (HasFailure()) std::fprintf(stderr, "%s\n", line.c_str());
  }

  int argc_ = 1;
  char name_[5] = "test";
  char* argv_[2] = {name_, nullptr};
  QCoreApplication application_{argc_, argv_};
  TemporaryFolder folder_;
  OpcServer server_;
  std::vector<std::string> log_;
  std::optional<OpcUaControls> controls_;
};

TEST_F(OpcUaTest, WeightsArriveWithQualityAndTimeAndACommandIsTakenOnce) {
  OpcServerProcess server(folder_ / "server");
  StartClient();
  OpcControl& scale = Connect(0, server.Endpoint(), {{Net, ""}, {Stat, "ns=2;s=SCALE_1/SCALESTAT.CV"}});
  scale.SetValue(Net, 99.0);  // an item without a tag
  Publish(scale, 12.5);
  EXPECT_TRUE(server.Holds(TagName(1, Gross), 12.5));
  EXPECT_TRUE(server.Holds(TagName(1, Stat), 0));
  EXPECT_TRUE(Logged("0: Status: Connected, 6 of 6 tags found"));
  EXPECT_EQ(server.Get(TagName(1, Net))["value"], 0);
  const std::int64_t streamed = server.Get(TagName(1, Gross))["time"];

  scale.SetValue(Stat, std::int16_t{16});
  scale.Update();
  EXPECT_TRUE(server.Holds(TagName(1, Stat), 16, "UncertainLastUsableValue"));
  EXPECT_TRUE(server.Holds(TagName(1, Gross), 12.5, "UncertainLastUsableValue"));
  EXPECT_EQ(server.Get(TagName(1, Gross))["time"], streamed) << "the weight is as old as its stream";

  server.Set(TagName(1, CmdParm), "7.5");
  server.Set(TagName(1, Cmd), "3");
  ASSERT_TRUE(Arrives(scale, Cmd, 3));
  EXPECT_EQ(std::get<double>(scale.Value(CmdParm)), 7.5);
  scale.SetValue(Cmd, std::int16_t{0});
  scale.SetValue(CmdStat, std::int16_t{103});
  scale.Update();
  for (bool answered = false; !answered;) {
    EXPECT_TRUE(scale.Value(Cmd) == OpcValue(std::int16_t{0}) || scale.Value(Cmd) == OpcValue(0.0)) << "not again";
    answered = server.Get(TagName(1, CmdStat))["value"] == 103;
    QCoreApplication::processEvents();
  }
  EXPECT_EQ(server.Get(TagName(1, Cmd))["value"], 0);

  // What leaves last is written, and the end of all brings it there.
  Publish(scale, 13.5);
  scale.DeleteGroup();
  scale.Disconnect();
  controls_.reset();
  EXPECT_EQ(server.Get(TagName(1, Gross))["value"], 13.5);
}

TEST_F(OpcUaTest, WeightsThatTheServerHoldsOfAnotherRunAreMarkedOldUntilThisOneHasItsOwn) {
  OpcServerProcess server(folder_ / "server");
  server.Set(TagName(1, Gross), "412.5");
  server.Set(TagName(1, Tare), "3");
  server.Set(TagName(1, Stat), "8");
  ASSERT_TRUE(server.Holds(TagName(1, Stat), 8, "Good"));
  const std::int64_t streamed = server.Get(TagName(1, Gross))["time"];
  StartClient();
  OpcControl& scale = Connect(0, server.Endpoint());
  EXPECT_TRUE(server.Holds(TagName(1, Stat), 24, "UncertainLastUsableValue"));
  EXPECT_TRUE(server.Holds(TagName(1, Gross), 412.5, "UncertainLastUsableValue"));
  EXPECT_EQ(server.Get(TagName(1, Gross))["time"], streamed);
  Publish(scale, 413);
  EXPECT_TRUE(server.Holds(TagName(1, Stat), 0, "Good"));
  EXPECT_TRUE(server.Holds(TagName(1, Gross), 413, "Good"));
  EXPECT_TRUE(server.Holds(TagName(1, Tare), 3, "UncertainLastUsableValue")) << "nobody has told of it yet";
}

TEST_F(OpcUaTest, ANodeGetsItsOwnTypeAndARefusalIsToldOnceAndLeavesTheOthers) {
  OpcServerProcess server(folder_ / "server", {"--type", "SCALE_1/GROSS.CV=Int16", "--type", "SCALE_1/TARE.CV=Byte",
                                               "--type", "SCALE_1/NET.CV=String", "--type", "SCALE_2/GROSS.CV=Float",
                                               "--type", "SCALE_2/TARE.CV=Int64"});
  StartClient();
  OpcControl& whole = Connect(0, server.Endpoint(), {{CmdParm, "no \"such\"\ntag"}});
  OpcControl& others = Connect(1, server.Endpoint());
  others.SetValue(Tare, -40.0);
  Publish(others, 12.5);
  for (int told = 1; double tare : {300.0, 301.0, 300.0, 300.0}) {
    whole.SetValue(Tare, tare);
    whole.SetValue(Net, -1.25);
    Publish(whole, -12.5);
    EXPECT_TRUE(Soon([&] { return TimesLogged("TARE.CV refused") == told; }));
    told = std::min(told + 1, 3);
  }
  EXPECT_TRUE(server.Holds(TagName(1, Gross), -13));
  EXPECT_TRUE(server.Holds(TagName(1, Net), "-1.25"));
  EXPECT_TRUE(server.Holds(TagName(2, Gross), 12.5));
  EXPECT_TRUE(server.Holds(TagName(2, Tare), nlohmann::json::array({4294967295, 4294967256})));
  EXPECT_EQ(server.Get(TagName(1, Tare))["value"], 0);
  EXPECT_TRUE(Logged("SCALE_1/TARE.CV refused: 300 is beyond Byte, 0 to 255"));
  EXPECT_TRUE(Logged("6 of 7 tags found, missing no \"such\"\ntag"));
}

TEST_F(OpcUaTest, AServerThatGoesAndComesBackGetsTheLastOfEachValue) {
  OpcServerProcess server(folder_ / "server");
  StartClient();
  OpcControl& scale = Connect(0, server.Endpoint());
  server.Set(TagName(1, CmdParm), "5");
  ASSERT_TRUE(Arrives(scale, CmdParm, 5));
  server.Kill();
  EXPECT_TRUE(Soon([&] { return scale.Value(CmdParm) == OpcValue{}; })) << "what it holds is not known any more";
  for (int update = 0; update < 10'000; ++update) Publish(scale, update);
  server.Start();
  const auto back = std::chrono::steady_clock::now();
  EXPECT_TRUE(server.Holds(TagName(1, Gross), 9'999));
  EXPECT_LT(std::chrono::steady_clock::now() - back, std::chrono::seconds(5));
}

TEST_F(OpcUaTest, ASecureServerIsTrustedByHandAndAsksForTheUser) {
  OpcServerProcess server(folder_ / "server", {"--secure", "--user", "scales:secret"});
  StartClient();
  server_.mode = "SignAndEncrypt";
  server_.policy = "Basic256Sha256";
  server_.user = "scales";
  server_.password = "wrong";
  OpcControl& scale = Connect(0, server.Endpoint());
  Publish(scale, 12.5);
  EXPECT_TRUE(Soon([&] { return Logged("Refused: certificate of the server not trusted"); }));
  EXPECT_EQ(server.Get(TagName(1, Gross))["value"], 0);
  struct stat key {};
  ASSERT_EQ(stat((folder_ / "client/own/private/private_key.pem").c_str(), &key), 0);
  EXPECT_EQ(key.st_mode & 0077, 0U);

  for (const auto& file : std::filesystem::directory_iterator(folder_ / "client/rejected")) {
    std::filesystem::rename(file, (folder_ / "client/trusted/certs/") + file.path().filename().string());
  }
  EXPECT_TRUE(Soon([&] { return Logged("Refused by the server: user name or password"); }));
  scale.DeleteGroup();
  scale.Disconnect();
  server_.password = "secret";
  Publish(Connect(0, server.Endpoint()), 13.5);
  EXPECT_TRUE(server.Holds(TagName(1, Gross), 13.5));
}

TEST_F(OpcUaTest, NonsenseForAnEndpointIsToldAndOtherChannelsAreServed) {
  OpcServerProcess server(folder_ / "server");
  StartClient();
  for (const char* endpoint : {"opc.tcp://", "opc.tcp://no such host\"\n:1", "opc.tcp://localhost:1"}) {
    log_.clear();
    Connect(1, endpoint).Update();
    EXPECT_TRUE(Soon([&] { return Logged("1: Status: Not connected to " + std::string(endpoint).substr(0, 15)); }));
    controls_->Control(1).DeleteGroup();
    controls_->Control(1).Disconnect();
  }
  Connect(1, "");
  EXPECT_EQ(controls_->Control(1).ConnectStatus(), "plant is no server");
  Publish(Connect(0, server.Endpoint()), 12.5);
  EXPECT_TRUE(server.Holds(TagName(1, Gross), 12.5));
}

TEST_F(OpcUaTest, AHelperThatMisbehavesIsToldAndAWholeOneGetsAllAgain) {
  const std::pair<const char*, const char*> kHelpers[] = {
      {"console.log('{\"hello\":1}\\nnonsense'); setTimeout(() => {}, 60000);", "nothing sensible: nonsense"},
      {"console.log('{\"hello\":1}'); setTimeout(() => {}, 60000);", "the OPC helper hangs"},
      {"setInterval(() => console.log('{\"pong\":1}\\n'.repeat(5000)), 1);", "the OPC helper floods"},
      {"throw new Error('broken');", "the OPC helper has ended: Error: broken"},
      {"await import('nowhere');", "ERR_MODULE_NOT_FOUND"},
  };
  for (const auto& [script, told] : kHelpers) {
    SCOPED_TRACE(told);
    std::ofstream(folder_ / "package.json") << R"({"type":"module"})";
    std::ofstream(folder_ / "helper.js") << script;
    log_.clear();
    StartClient(folder_.Path());
    Publish(Connect(0, "opc.tcp://localhost:1"), 1);
    EXPECT_TRUE(Soon([&] { return Logged(told); }));
  }
}

TEST_F(OpcUaTest, AHelperThatIsKilledComesBackWithTheWeightsAndOneWhoseManagerIsSilentOrGoneMarksThem) {
  OpcServerProcess server(folder_ / "server");
  StartClient();
  OpcControl& scale = Connect(0, server.Endpoint());
  Publish(scale, 12.5);
  ASSERT_TRUE(server.Holds(TagName(1, Gross), 12.5));
  server.Set(TagName(1, Gross), "1");  // so that the next arrival is seen
  ASSERT_TRUE(KillHelper(folder_ / "client"));
  EXPECT_TRUE(server.Holds(TagName(1, Gross), 12.5));
  EXPECT_TRUE(Logged("Status: the OPC helper has ended"));

  QProcess orphan;
  orphan.start("node", {QString(OPC_HELPER) + "/helper.js", QString::fromStdString(folder_ / "orphan")});
  const nlohmann::json connect = {
      {"op", "connect"},
      {"ch", 1},
      {"server",
       {{"endpoint", server.Endpoint()}, {"mode", "None"}, {"policy", "None"}, {"user", ""}, {"password", ""}}},
      {"tags", {{"0", TagName(2, Gross)}, {"3", TagName(2, Stat)}}}};
  const std::string update =
      R"({"op":"update","channels":[{"ch":1,"seq":1,"read":false,"items":[[0,7.5,1700000000000],[3,8,1700000000000]]}]})";
  orphan.write((connect.dump() + "\n" + update + "\n").c_str());
  ASSERT_TRUE(server.Holds(TagName(2, Gross), 7.5));
  EXPECT_TRUE(server.Holds(TagName(2, Gross), 7.5, "BadNoCommunication")) << "its manager says nothing";
  EXPECT_TRUE(server.Holds(TagName(2, Stat), 24, "BadNoCommunication"));
  orphan.write("{\"op\":\"ping\"}\n");
  EXPECT_TRUE(server.Holds(TagName(2, Gross), 7.5));
  EXPECT_TRUE(server.Holds(TagName(2, Stat), 8));
  orphan.closeWriteChannel();
  ASSERT_TRUE(orphan.waitForFinished(10'000));
  EXPECT_TRUE(server.Holds(TagName(2, Stat), 24, "BadNoCommunication"));
  EXPECT_TRUE(server.Holds(TagName(2, Gross), 7.5, "BadNoCommunication"));
}

}  // namespace
