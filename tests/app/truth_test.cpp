#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>

#include "config/channel_file.h"
#include "core/gdi_timer.h"
#include "core/initialisation.h"
#include "core/reload.h"
#include "core/scan_engine.h"
#include "core/shutdown.h"
#include "core/startup.h"
#include "core/transmission.h"
#include "protocol/number.h"
#include "tests/app/memory_screen.h"
#include "tests/support/test_plant.h"

/// Whatever happens, each face of a channel shows the weight that its device sends now, or no weight, or marks what
/// it shows as old.
namespace {

constexpr int kCh = 0;
constexpr int kOther = 1;
constexpr int kProto = 2;
constexpr std::string_view kFormat = "/plant/Tarvex-Std-OVStdFmt.Cfg";
constexpr std::string_view kOldWeight = "12.50";
constexpr std::string_view kWeight = "99.99";  ///< what lies on the scale when the moment has come

std::string ShippedFormat() {
  std::ifstream file(std::string(FORMATS_FOLDER) + "/Tarvex-Std-OVStdFmt.Cfg", std::ios::binary);
  std::ostringstream content;
  content << file.rdbuf();
  return content.str();
}

std::string Frame(const std::string& digits, const std::string& status = ",0 ") {
  return "\x02" + status + digits + "000000\r";
}
const std::string kOldFrame = Frame("001250");
const std::string kFrame = Frame("009999");

struct Shown {
  std::string weight;  ///< empty: none
  bool old;
};

/// A client of the bus that keeps copies of what is announced.
class BusClientCopy : public DeviceFieldWatcher {
 public:
  explicit BusClientCopy(Automation& devices) : devices_(devices) { devices.SetWatcher(this); }
  void FieldsWritten(int index, unsigned fields) override {
    if (index != kCh) return;
    const Device& device = *devices_.Objects().At(index);
    if ((fields & DeviceField::Gross) != 0) gross = device.CGross;
    if ((fields & DeviceField::ScaleStat) != 0) status = device.CScaleStat;
  }
  double gross = 0;
  std::int16_t status = 0;

 private:
  Automation& devices_;
};

bool HasOfflineBit(double status) { return (static_cast<int>(status) & StatusBit::Offline) != 0; }
std::string Number(double value) { return std::string(GeneralText(Decimal::FromDouble(value)).View()); }

class TruthPlant : public TestPlant {
 public:
  TruthPlant() {
    files.content[std::string(kFormat)] = ShippedFormat();
    tables.MaxChannel = 1;
    tables.ScreenPainted = True;
    form.screen = &screen;
    engine.publisher.BindDevices();
    for (int ch : {kCh, kOther}) WriteFile(ch, true);
    Start();
    SendToBoth(kOldFrame);
    screen.Serve();
  }

  void WriteFile(int ch, bool enabled) {
    RestoreChannelDefaults(tables, files, ch);
    for (auto* flag : {&tables.ChanOpcEnabled, &tables.ChanDdeServer, &tables.ChanAsciiLog}) (*flag)[ch] = True;
    tables.ChanEnabled[ch] = AsBoolean(enabled);
    tables.ChanTimeout[ch] = 5;
    WriteChannelFile(tables, files, ch);
  }
  void Start() {
    LaunchMainScreen(live);
    for (int tick = 0; tick < 3; ++tick) Timer1Tick(live);
  }
  void Stop() { CloseTXMWindow(live); }
  void Send(const std::string& bytes) {
    ports.port[kCh].waiting += bytes;
    Timer1Tick(live);
  }
  void SendToBoth(const std::string& bytes) {
    ports.port[kOther].waiting += bytes;
    Send(bytes);
  }
  void Silence(int ticks) {
    for (int tick = 0; tick < ticks; ++tick) Timer1Tick(live);
  }

  std::map<std::string, Shown> Faces() {
    GDITimerTick(live);
    const DdeTopics& topics = manager.Publishing().Topics();
    const std::string& item = topics.Request(kCh, 0);
    const std::string row = TextRow();
    const bool notOnline = row.find(Caption::Online) == std::string::npos;
    return {
        {"row", {std::string(Trim(tables.ChanGross[kCh])), tables.ChanStatusText[kCh] != Caption::Online}},
        {"text screen",
         {row.find(kWeight) != std::string::npos      ? std::string(kWeight)
          : row.find(kOldWeight) != std::string::npos ? std::string(kOldWeight)
                                                      : "",
          notOnline}},
        {"bus", {Number(copy.gross), HasOfflineBit(copy.status)}},
        {"item link", {item, HasOfflineBit(NumericValue(topics.Request(kCh, 3)))}},
        {"OPC item",
         {Number(std::get<double>(opc.control[kCh].Value(0))),
          HasOfflineBit(std::get<std::int16_t>(opc.control[kCh].Value(3)))}},
    };
  }
  /// Gross weights that the log has taken since it was last asked.
  std::vector<std::string> LoggedWeights() {
    std::istringstream lines(std::exchange(files.content[tables.ChanAsciiLogName[kCh]], {}));
    std::vector<std::string> weights;
    for (std::string line; std::getline(lines, line);) {
      const std::size_t begin = line.find(", ") + 2;
      weights.emplace_back(Trim(line.substr(begin, line.find(',', begin) - begin)));
    }
    return weights;
  }

  MemoryTerminal terminal{24, 80};
  TextScreen screen{tables, system, terminal, "plant", [] {}};
  ScreenForm form;
  Engine live = EngineWith({.mainForm = &form});
  BusClientCopy copy{manager.Publishing().Devices()};

 private:
  std::string TextRow() const {
    std::istringstream lines(terminal.Screen());
    for (std::string line; std::getline(lines, line);) {
      if (line.find("SCALE 1") != std::string::npos) return line;
    }
    return {};
  }
};

enum class Expected {
  Weight,       ///< the channel goes on: every face shows what the device sends
  NothingFalse  ///< the weight of before stands marked, or none stands
};

struct Moment {
  const char* name;
  void (*happens)(TruthPlant& plant);
  Expected expected;
  bool deviceFault = false;  ///< the stream itself says that it holds no weight, and that is published as 0
};

/// While something holds the tick, the other timers go on for two seconds.
void HoldScan(TruthPlant& plant) {
  plant.events.onDoEvents = [&plant] {
    for (int tick = 0; tick < 20; ++tick) {
      plant.system.millisecond += 100;
      TxTimerTick(plant.live);
    }
  };
  Timer1Tick(plant.live);
  plant.events.onDoEvents = nullptr;
}

void FaultOfTheDevicesFormat(TruthPlant& plant) {
  plant.tables.ProtoGrossLen[kProto] = 4;
  plant.Send(Frame("009999", "/0 "));  // five places do not go into four digits
}

constexpr Moment kMoments[] = {
    {"cable out", [](TruthPlant& plant) { plant.Silence(6); }, Expected::NothingFalse},
    {"cable out in a frame, and back in another",
     [](TruthPlant& plant) {
       plant.Send(kOldFrame.substr(0, 8));
       plant.ports.port[kCh].lineLost = true;
       plant.Send(kFrame.substr(8));
     },
     Expected::NothingFalse, true},
    {"scale silent in a frame, and back in another",
     [](TruthPlant& plant) {
       plant.Send(kOldFrame.substr(0, 8));
       plant.Silence(6);
       plant.Send(kFrame.substr(8));
     },
     Expected::NothingFalse, true},
    {"noise on a line without its scale",
     [](TruthPlant& plant) {
       plant.Silence(6);
       for (int tick = 0; tick < 3; ++tick) plant.Send("x");
     },
     Expected::NothingFalse},
    {"noise from the moment the scale is gone",
     [](TruthPlant& plant) {
       for (int tick = 0; tick < 6; ++tick) plant.Send("x");
     },
     Expected::NothingFalse},
    {"half a frame after the scale was given up, and the rest of another",
     [](TruthPlant& plant) {
       plant.Silence(6);
       plant.Send(kOldFrame.substr(0, 8));
       plant.Silence(6);
       plant.Send(kFrame.substr(8));
     },
     Expected::NothingFalse, true},
    {"terminators with nothing between them",
     [](TruthPlant& plant) {
       for (int tick = 0; tick < 6; ++tick) plant.Send("\r\r");
     },
     Expected::NothingFalse, true},
    {"no terminator any more",
     [](TruthPlant& plant) {
       for (int tick = 0; tick < 6; ++tick) plant.Send("0099990099990099990099990099990099990099");
     },
     Expected::NothingFalse},
    {"device fault", [](TruthPlant& plant) { plant.Send(Frame("009999", ",4 ")); }, Expected::NothingFalse, true},
    {"damaged frame",
     [](TruthPlant& plant) {
       plant.Send(
           Frame("0\x19"
                 "9999"));
     },
     Expected::NothingFalse, true},
    {"format fault", FaultOfTheDevicesFormat, Expected::NothingFalse},
    {"format fault at the screen, then silence",
     [](TruthPlant& plant) {
       FaultOfTheDevicesFormat(plant);
       plant.Silence(6);
     },
     Expected::NothingFalse},
    {"format fault, and good again",
     [](TruthPlant& plant) {
       FaultOfTheDevicesFormat(plant);
       plant.tables.ProtoGrossLen[kProto] = 6;
       for (int tick = 0; tick < 3; ++tick) plant.Send(kFrame);
     },
     Expected::Weight},
    {"another channel faults in every tick, and its box stands",
     [](TruthPlant& plant) {
       plant.opc.control[kOther].onUpdate = [] { throw RunTimeError(57, "server gone"); };
       plant.tables.ChanPrevStatusBits[kOther] = kPrevStatusSentinel;
       for (int tick = 0; tick < 6; ++tick) {
         plant.tables.ChanOpcPending[kOther] = True;
         plant.Send(kFrame);
       }
       EXPECT_EQ(plant.notice.boxes.size(), 1U);
     },
     Expected::Weight},
    {"own outlet faults in every tick, and the scale is silent",
     [](TruthPlant& plant) {
       plant.opc.control[kCh].onUpdate = [] { throw RunTimeError(57, "server gone"); };
       for (int tick = 0; tick < 7; ++tick) {
         plant.tables.ChanOpcPending[kCh] = True;
         plant.Silence(1);
       }
     },
     Expected::NothingFalse},
    {"settings taken from a changed file", [](TruthPlant& plant) { ReloadChannel(plant.live, kCh); },
     Expected::NothingFalse},
    {"settings taken from a changed file, and opened",
     [](TruthPlant& plant) {
       ReloadChannel(plant.live, kCh);
       for (int tick = 0; tick < 3; ++tick) plant.Send(kFrame);
     },
     Expected::Weight},
    {"scan held", HoldScan, Expected::NothingFalse},
    {"scan held, and on again",
     [](TruthPlant& plant) {
       HoldScan(plant);
       for (int tick = 0; tick < 3; ++tick) plant.Send(kFrame);
     },
     Expected::Weight},
    {"stop", [](TruthPlant& plant) { plant.Stop(); }, Expected::NothingFalse},
    {"restart, and nothing sent yet",
     [](TruthPlant& plant) {
       plant.Stop();
       plant.Start();
     },
     Expected::NothingFalse},
    {"restart, and the scale sends",
     [](TruthPlant& plant) {
       plant.Stop();
       plant.Start();
       for (int tick = 0; tick < 3; ++tick) plant.Send(kFrame);
     },
     Expected::Weight},
    {"disabled in its file meanwhile",
     [](TruthPlant& plant) {
       plant.Stop();
       plant.WriteFile(kCh, false);
       plant.Start();
     },
     Expected::NothingFalse},
    {"device missing at the restart",
     [](TruthPlant& plant) {
       plant.Stop();
       plant.ports.port[kCh].openError = ErrorNumber::SerialPortInvalid;
       plant.Start();
     },
     Expected::NothingFalse},
    {"file emptied while the device is missing",
     [](TruthPlant& plant) {
       plant.Stop();
       plant.ports.port[kCh].openError = ErrorNumber::SerialPortInvalid;
       plant.Start();
       plant.files.content[ChannelFilePath(plant.tables, kCh)].clear();
       plant.ports.port[kCh].openError = 0;
       ++plant.system.second;
       plant.Silence(1);
       EXPECT_EQ(plant.tables.ChanStatusText[kCh], Caption::SettingsLost);
     },
     Expected::NothingFalse},
    {"port in use at the restart",
     [](TruthPlant& plant) {
       plant.Stop();
       plant.ports.port[kCh].openError = ErrorNumber::SerialPortInUse;
       plant.Start();
     },
     Expected::NothingFalse},
    {"format damaged at the restart",
     [](TruthPlant& plant) {
       plant.Stop();
       plant.files.content[std::string(kFormat)].resize(200);
       plant.Start();
     },
     Expected::NothingFalse},
    {"opened again from its setup",
     [](TruthPlant& plant) {
       plant.tables.ChanConnected[kCh] = False;
       plant.tables.ReinitChannel = kCh;
       plant.Silence(1);
     },
     Expected::NothingFalse},
    {"end",
     [](TruthPlant& plant) {
       plant.Stop();
       Unload_Tarvex_MainForm(plant.live);
       TaskCtrl(plant.live, kEndTask);
     },
     Expected::NothingFalse},
};

TEST(TruthTest, AtEveryMomentEachFaceShowsTheWeightOrNoneOrMarksItAsOld) {
  for (const Moment& moment : kMoments) {
    TruthPlant plant;
    for (const auto& [face, shown] : plant.Faces()) {
      ASSERT_EQ(shown.weight, face == "bus" || face == "item link" || face == "OPC item" ? "12.5" : kOldWeight) << face;
      ASSERT_FALSE(shown.old) << face;
    }
    EXPECT_EQ(plant.LoggedWeights(), std::vector<std::string>{std::string(kOldWeight)});
    moment.happens(plant);
    for (const auto& [face, shown] : plant.Faces()) {
      SCOPED_TRACE(std::string(moment.name) + " / " + face + ": \"" + shown.weight + (shown.old ? "\", old" : "\""));
      const bool right = shown.weight == kWeight;
      if (moment.expected == Expected::Weight) {
        EXPECT_TRUE(right && !shown.old);
      } else {
        EXPECT_TRUE(right || shown.old || shown.weight.empty() || (moment.deviceFault && shown.weight == "0"));
      }
    }
    for (const std::string& weight : plant.LoggedWeights()) {
      // The log holds streams, not moments: one that is handled again says once more what the scale has said.
      EXPECT_TRUE(weight == kWeight || weight == kOldWeight || (moment.deviceFault && weight == "0")) << weight;
    }
  }
}

}  // namespace
