#include "core/reload.h"

#include <gtest/gtest.h>

#include "config/channel_file.h"
#include "config/format_file.h"
#include "core/scan_engine.h"
#include "core/shutdown.h"
#include "core/startup.h"
#include "tests/support/test_plant.h"

namespace {

constexpr int kProto = 10;
constexpr int kOtherProto = 11;
constexpr int kCh = 1;
constexpr int kNeighbour = 2;

/// Three running scales with every outlet, on a format of seven digits and a CR, from files as a user has them.
struct ReloadPlant : TestPlant {
  ReloadPlant() {
    tables.MaxChannel = 2;
    engine.publisher.BindDevices();
    tables.ProtoTerminator[kProto] = '\r';
    tables.ProtoGrossEnable[kProto] = True;
    tables.ProtoGrossPos[kProto] = 1;
    tables.ProtoGrossLen[kProto] = 7;
    for (int proto : {kProto, kOtherProto}) SaveFormatFile(tables, files, proto);
    for (int ch = 0; ch <= tables.MaxChannel; ++ch) {
      RestoreChannelDefaults(tables, files, ch);
      for (auto* flag : {&tables.ChanOpcEnabled, &tables.ChanDdeServer, &tables.ChanEnabled}) (*flag)[ch] = True;
      tables.ChanProtocol[ch] = kProto;
      tables.ChanPort[ch] = ch;
      WriteChannelFile(tables, files, ch);
    }
    Start();
    Weigh("  12.50\r");
  }
  void Start() {
    LaunchMainScreen(engine);
    for (int tick = 0; tick < 2; ++tick) Tick();
  }
  void Weigh(const std::string& stream) {
    for (int ch = 0; ch <= tables.MaxChannel; ++ch) ports.port[static_cast<std::size_t>(ch)].waiting += stream;
    Tick();
  }
  std::string& File(int ch) { return files.content["/plant/Tarvex-SCALE" + std::to_string(ch + 1) + ".Cfg"]; }
  std::string& Format(int proto) {
    return files.content["/plant/Tarvex-Std-CustFmt" + std::to_string(proto - 9) + ".Cfg"];
  }
  /// Changes the file as another program does, which leaves the tables alone.
  template <typename Change>
  void Edit(int ch, const Change& change) {
    TestPlant other;
    ReadChannelFile(other.tables, files, engine.log, ch);
    other.tables.ProgramFolder = tables.ProgramFolder;
    change(other.tables);
    WriteChannelFile(other.tables, files, ch);
  }
  int FaultOf(const std::function<void(Engine&)>& step) {
    try {
      step(engine);
    } catch (const RunTimeError& fault) {
      EXPECT_NE(fault.Description(), "");
      return fault.Number();
    }
    return 0;
  }
  /// Faces of the channel whose weight is marked as old: D device object, I item link, O OPC item.
  std::string FacesMarkedOld(int ch) {
    const auto old = [](double status) { return (static_cast<int>(status) & StatusBit::Offline) != 0; };
    const std::string& item = manager.Publishing().Topics().Request(ch, 3);
    std::string faces;
    if (old(manager.Publishing().Devices().Objects().At(ch)->CScaleStat)) faces += "D";
    if (old(item.empty() ? 0 : std::stod(item))) faces += "I";
    if (old(std::get<std::int16_t>(opc.control[static_cast<std::size_t>(ch)].Value(3)))) faces += "O";
    return faces;
  }
};

struct Moment {
  const char* name;
  void (*happens)(ReloadPlant& plant);
  int fault;            ///< number that the caller gets, 0 for none
  const char* caption;  ///< of the channel when the next stream has come
  int openings;         ///< of its port, in all
};

constexpr Moment kMoments[] = {
    {"outlets off and another port",
     [](ReloadPlant& plant) {
       plant.Edit(kCh, [](Tables& file) {
         file.ChanOpcEnabled[kCh] = file.ChanDdeServer[kCh] = False;
         file.ChanPort[kCh] = 20;
       });
     },
     0, "Online...", 2},
    {"disabled", [](ReloadPlant& plant) { plant.Edit(kCh, [](Tables& file) { file.ChanEnabled[kCh] = False; }); }, 0,
     "Device Disabled...", 1},
    {"damaged file", [](ReloadPlant& plant) { plant.File(kCh) = "10,0,notaport\r\n"; }, ErrorNumber::TypeMismatch,
     "Online...", 1},
    {"another protocol, whose format is damaged",
     [](ReloadPlant& plant) {
       plant.Edit(kCh, [](Tables& file) { file.ChanProtocol[kCh] = kOtherProto; });
       plant.Format(kOtherProto) = "0,x\r\n";
     },
     ErrorNumber::TypeMismatch, "Online...", 1},
    {"being edited", [](ReloadPlant& plant) { plant.tables.EditedChannel = kCh; }, ErrorNumber::InvalidCall,
     "Online...", 1},
    {"its neighbour being edited", [](ReloadPlant& plant) { plant.tables.EditedChannel = kNeighbour; }, 0, "Online...",
     2},
    {"not opened yet", [](ReloadPlant& plant) { plant.tables.ChannelsInitialised = False; }, ErrorNumber::InvalidCall,
     "Online...", 1},
};

TEST(ReloadTest, AChannelTakesItsFileOrGoesOnWithWhatItHadAndTheOthersNoticeNothing) {
  for (const Moment& moment : kMoments) {
    SCOPED_TRACE(moment.name);
    ReloadPlant plant;
    ASSERT_EQ(plant.FacesMarkedOld(kCh), "");
    moment.happens(plant);
    EXPECT_EQ(plant.FaultOf([](Engine& engine) { ReloadChannel(engine, kCh); }), moment.fault);
    const bool taken = moment.fault == 0;
    EXPECT_EQ(plant.FacesMarkedOld(kCh), taken ? "DIO" : "") << "at once, where the weights had gone";
    EXPECT_EQ(plant.ports.port[kCh].open, !taken);
    EXPECT_EQ(plant.opc.control[kCh].calls.back(), taken ? "disconnect" : "group");
    EXPECT_EQ(plant.FacesMarkedOld(0), "");

    plant.tables.ChannelsInitialised = True;
    plant.Tick();
    plant.Weigh("  99.00\r");
    EXPECT_EQ(plant.tables.ChanStatusText[kCh], moment.caption);
    EXPECT_EQ(plant.tables.ChanGross[kCh], plant.ports.port[kCh].open ? "  99.00" : "");
    EXPECT_EQ(plant.ports.port[kCh].opened, moment.openings);
    EXPECT_EQ(plant.ports.port[0].opened, 1);
  }
}

TEST(ReloadTest, SeveralChannelsCanBeAskedForBeforeOneTickAndAStopForgetsThem) {
  ReloadPlant plant;
  for (int ch : {kCh, kNeighbour, kCh}) ReloadChannel(plant.engine, ch);
  plant.Tick();
  for (int ch : {kCh, kNeighbour}) {
    EXPECT_EQ(plant.tables.ChanStatusText[ch], "Ready...");
    EXPECT_EQ(plant.ports.port[static_cast<std::size_t>(ch)].opened, 2);
  }
  ReloadChannel(plant.engine, kCh);
  CloseTXMWindow(plant.engine);
  for (const auto& step :
       {+[](Engine& engine) { ReloadChannel(engine, kCh); }, +[](Engine& engine) { ReloadProtocol(engine, kProto); }}) {
    EXPECT_EQ(plant.FaultOf(step), ErrorNumber::InvalidCall);
  }
  plant.Start();
  EXPECT_EQ(plant.ports.port[kCh].opened, 3) << "by the start alone";
}

TEST(ReloadTest, AMissingDeviceIsNotLookedForWhileItsChannelIsEditedAndIsOpenedOnceWhenTheFileNamesAnother) {
  ReloadPlant plant;
  MemoryPort& port = plant.ports.port[kCh];
  port.openError = ErrorNumber::SerialPortInvalid;
  ReloadChannel(plant.engine, kCh);
  plant.Tick();
  ASSERT_EQ(plant.tables.ChanDeviceMissing[kCh], True);
  const int tried = port.opened;
  plant.tables.EditedChannel = kCh;
  ++plant.system.second;
  plant.Tick();
  EXPECT_EQ(port.opened, tried);

  plant.tables.EditedChannel = kNoChannel;
  port.openError = 0;
  plant.Edit(kCh, [](Tables& file) { file.ChanPort[kCh] = 20; });
  ReloadChannel(plant.engine, kCh);
  ++plant.system.second;
  for (int tick = 0; tick < 2; ++tick) plant.Tick();
  EXPECT_EQ(port.opened, tried + 1);
  EXPECT_EQ(port.commPort, 21);
}

TEST(ReloadTest, ANewFormatHoldsFromTheNextStreamAndOpensTheChannelsThatItsDamageKeptClosed) {
  ReloadPlant plant;
  const auto withLength = [&](int length, int proto) {
    TestPlant other;
    LoadFormatFile(other.tables, plant.files, plant.engine.log, kProto);
    other.tables.ProtoGrossLen[kProto] = length;
    SaveFormatFile(other.tables, plant.files, kProto);
    if (proto != kProto) plant.Format(proto) = plant.Format(kProto);
  };
  plant.tables.ChanDecimalsKnown[kCh] = plant.tables.ChanStatusDecimals[kCh] = True;  // by a row that is no more
  plant.tables.ProtoDecimalCode[kProto] = -2;
  withLength(5, kProto);
  ReloadProtocol(plant.engine, kProto);
  EXPECT_EQ(plant.FacesMarkedOld(kCh), "");
  plant.Weigh(" 3.25xx\r");
  EXPECT_EQ(plant.tables.ChanGross[kCh], " 3.25");
  EXPECT_EQ(plant.ports.port[kCh].opened, 1) << "the channel goes on";

  plant.tables.ProtoFault[kOtherProto].emplace(ErrorNumber::InputPastEnd, "damaged");
  plant.tables.ChanFormatRefused[kNeighbour] = True;
  plant.tables.ChanProtocol[kNeighbour] = kOtherProto;
  plant.tables.ChanEnabled[kNeighbour] = plant.tables.ChanConnected[kNeighbour] = False;
  withLength(4, kOtherProto);
  ReloadProtocol(plant.engine, kOtherProto);
  plant.Tick();
  EXPECT_EQ(plant.tables.ChanStatusText[kNeighbour], "Ready...");
  EXPECT_EQ(plant.FaultOf([](Engine& engine) { ReloadProtocol(engine, 42); }), ErrorNumber::SubscriptOutOfRange);
  EXPECT_EQ(plant.FaultOf([](Engine& engine) { ReloadChannel(engine, 3); }), ErrorNumber::SubscriptOutOfRange);
}

}  // namespace
