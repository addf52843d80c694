#include "core/reload.h"

#include <gtest/gtest.h>

#include "config/channel_file.h"
#include "config/format_file.h"
#include "core/shutdown.h"
#include "core/startup.h"
#include "tests/support/test_plant.h"

namespace {

constexpr int kProto = 10;
constexpr int kOtherProto = 11;
constexpr int kCh = 1;

/// Three running scales on a format of seven digits and a CR, with links and OPC, from files as a user has them.
struct ReloadPlant : TestPlant {
  MemoryPort& port = ports.port[kCh];

  ReloadPlant() {
    tables.MaxChannel = 2;
    tables.ProtoTerminator[kProto] = '\r';
    tables.ProtoGrossEnable[kProto] = True;
    tables.ProtoGrossPos[kProto] = 1;
    for (int proto : {kProto, kOtherProto}) SaveFormat(proto, 7);
    for (int ch = 0; ch <= tables.MaxChannel; ++ch) {
      Edit(ch, [ch](Tables& file) {
        for (auto* flag : {&file.ChanOpcEnabled, &file.ChanDdeServer, &file.ChanEnabled}) (*flag)[ch] = True;
        file.ChanProtocol[ch] = kProto;
      });
    }
    engine.publisher.BindDevices();
    LaunchMainScreen(engine);
    Tick();
    Weigh("  12.50\r");
  }
  void Weigh(const std::string& stream) {
    for (MemoryPort& each : ports.port) each.waiting += stream;
    Tick();
  }
  /// Changes a file as another program does, which leaves the tables alone.
  template <typename Change>
  void Edit(int ch, const Change& change) {
    TestPlant other;
    ReadChannelFile(other.tables, files, engine.log, ch);
    change(other.tables);
    WriteChannelFile(other.tables, files, ch);
  }
  void SaveFormat(int proto, int length) {
    const std::int32_t before = std::exchange(tables.ProtoGrossLen[proto], length);
    SaveFormatFile(tables, files, proto);
    tables.ProtoGrossLen[proto] = before;
  }
  int Fault(void (*reload)(Engine&, int), int number) {
    try {
      reload(engine, number);
    } catch (const RunTimeError& fault) {
      return fault.Number();
    }
    return 0;
  }
  bool IsMarkedOld(int ch) {
    const auto status = std::get<std::int16_t>(opc.control[static_cast<std::size_t>(ch)].Value(3));
    return (status & StatusBit::Offline) != 0 && manager.Publishing().Topics().Request(ch, 3) == std::to_string(status);
  }
};

struct Moment {
  void (*happens)(ReloadPlant& plant);
  int fault;            ///< number that the caller gets, 0 for none
  const char* caption;  ///< of the channel when the next stream has come
  int openings;         ///< of its port, in all
};

const std::pair<const char*, Moment> kMoments[] = {
    {"outlets off",
     {[](ReloadPlant& plant) {
        plant.Edit(kCh, [](Tables& file) { file.ChanOpcEnabled[kCh] = file.ChanDdeServer[kCh] = False; });
      },
      0, "Online...", 2}},
    {"disabled",
     {[](ReloadPlant& plant) { plant.Edit(kCh, [](Tables& file) { file.ChanEnabled[kCh] = False; }); }, 0,
      "Device Disabled...", 1}},
    {"damaged file",
     {[](ReloadPlant& plant) { plant.files.content["/plant/Tarvex-SCALE2.Cfg"] = "x\r\n"; }, 13, "Online...", 1}},
    {"another protocol, with a damaged format",
     {[](ReloadPlant& plant) {
        plant.Edit(kCh, [](Tables& file) { file.ChanProtocol[kCh] = kOtherProto; });
        plant.files.content["/plant/Tarvex-Std-CustFmt2.Cfg"] = "x\r\n";
      },
      13, "Online...", 1}},
    {"being edited", {[](ReloadPlant& plant) { plant.tables.EditedChannel = kCh; }, 5, "Online...", 1}},
    {"another being edited", {[](ReloadPlant& plant) { plant.tables.EditedChannel = 2; }, 0, "Online...", 2}},
    {"not opened yet", {[](ReloadPlant& plant) { plant.tables.ChannelsInitialised = False; }, 5, "Online...", 1}},
};

TEST(ReloadTest, AChannelTakesItsFileOrGoesOnWithWhatItHadAndTheOthersNoticeNothing) {
  for (const auto& [name, moment] : kMoments) {
    SCOPED_TRACE(name);
    ReloadPlant plant;
    moment.happens(plant);
    EXPECT_EQ(plant.Fault(ReloadChannel, kCh), moment.fault);
    const bool taken = moment.fault == 0;
    EXPECT_EQ(plant.IsMarkedOld(kCh), taken) << "at once, and where the weights had gone";
    EXPECT_EQ(plant.port.open, !taken);
    EXPECT_EQ(plant.opc.control[kCh].calls.back(), taken ? "disconnect" : "group");
    plant.tables.ChannelsInitialised = True;
    plant.Tick();
    plant.Weigh("  99.00\r");
    EXPECT_EQ(plant.tables.ChanStatusText[kCh], moment.caption);
    EXPECT_EQ(plant.tables.ChanGross[kCh], plant.port.open ? "  99.00" : "");
    EXPECT_EQ(plant.port.opened, moment.openings);
    EXPECT_FALSE(plant.ports.port[0].opened > 1 || plant.IsMarkedOld(0));
  }
}

TEST(ReloadTest, SeveralChannelsCanBeAskedForBeforeOneTickAndAStopForgetsThem) {
  ReloadPlant plant;
  for (int ch : {kCh, 2, kCh}) ReloadChannel(plant.engine, ch);
  plant.Tick();
  EXPECT_EQ(plant.port.opened + plant.ports.port[2].opened, 2 + 2);
  ReloadChannel(plant.engine, kCh);
  CloseTXMWindow(plant.engine);
  EXPECT_EQ(plant.Fault(ReloadChannel, kCh), 5);
  EXPECT_EQ(plant.Fault(ReloadProtocol, kProto), 5);
  LaunchMainScreen(plant.engine);
  for (int tick = 0; tick < 2; ++tick) plant.Tick();
  EXPECT_EQ(plant.port.opened, 3) << "by the start alone";
}

TEST(ReloadTest, AMissingDeviceIsNotLookedForWhileItsChannelIsEdited) {
  ReloadPlant plant;
  plant.port.openError = ErrorNumber::SerialPortInvalid;
  ReloadChannel(plant.engine, kCh);
  plant.Tick();
  plant.tables.EditedChannel = kCh;
  ++plant.system.second;
  plant.Tick();
  EXPECT_EQ(plant.port.opened, 2);
}

TEST(ReloadTest, ANewFormatHoldsFromTheNextStreamAndOpensTheChannelsThatItsDamageKeptClosed) {
  ReloadPlant plant;
  Tables& tables = plant.tables;
  tables.ChanStatusDecimals[kCh] = True;  // by a row that is no more
  tables.ProtoFault[kProto].emplace(ErrorNumber::InputPastEnd, "damaged");
  tables.ChanFormatRefused[2] = True;
  tables.ChanConnected[2] = tables.ChanEnabled[2] = False;
  plant.SaveFormat(kProto, 5);
  ReloadProtocol(plant.engine, kProto);
  plant.Weigh(" 3.25xx\r");
  EXPECT_EQ(tables.ChanGross[kCh], " 3.25");
  EXPECT_EQ(plant.port.opened, 1) << "the channel goes on";
  EXPECT_EQ(tables.ChanStatusText[2], "Ready...");
  EXPECT_EQ(plant.Fault(ReloadChannel, 3), 9);
}

}  // namespace
