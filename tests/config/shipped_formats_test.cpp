#include <algorithm>
#include <fstream>
#include <random>
#include <sstream>

#include "protocol/status.h"
#include "tests/config/config_plant.h"

namespace {

constexpr int kShort = 1;
constexpr int kStandard = 2;
constexpr int kChannel = 6;

struct Shipped {
  int proto;
  const char* file;
};
constexpr Shipped kShipped[] = {{kShort, "Tarvex-Std-OVShortFmt.Cfg"}, {kStandard, "Tarvex-Std-OVStdFmt.Cfg"}};

std::string ShippedFile(const std::string& name) {
  std::ifstream file(std::string(FORMATS_FOLDER) + "/" + name, std::ios::binary);
  std::ostringstream content;
  content << file.rdbuf();
  return content.str();
}

/// Both formats loaded; channel 6 connected to one of them, with pounds as its primary unit.
class ShippedPlant : public ConfigPlant {
 public:
  explicit ShippedPlant(int proto) {
    for (const Shipped& shipped : kShipped) {
      File(shipped.file) = ShippedFile(shipped.file);
      EXPECT_EQ(Run(CfgAction::ReadFormatFile, shipped.proto), "");
    }
    Connect(kChannel, proto);
    tables.ChanPrimaryUnitsName[kChannel] = "LB";
  }
  bool Lamp(int item) const { return tables.ChanIndicator[item][kChannel] == True; }
};

/// A frame as a device builds it.
struct Frame {
  int decimals = 4;
  int increment = 1;
  bool net = false, negative = false, outOfRange = false, motion = false, kilograms = false, print = false;
  std::string digits = "001250";
  std::string tare = "000400";

  std::string Bytes(int proto) const {
    std::string bytes = "\x02";
    bytes += static_cast<char>(0x20 | increment << 3 | decimals);
    bytes += static_cast<char>(0x20 | kilograms << 4 | motion << 3 | outOfRange << 2 | negative << 1 | int{net});
    bytes += static_cast<char>(0x20 | print << 3);
    return bytes + digits + (proto == kStandard ? tare : "") + "\r";
  }
};

/// What the digits 001250, the tare 000400 and their sum are in each decimal position.
struct Shown {
  const char* weight;
  const char* negative;
  const char* tare;
  const char* sum;
  const char* difference;  ///< tare less weight
};
constexpr Shown kShown[] = {
    {"125000", "-125000", " 40000", "165000", "-85000"},  {" 12500", " -12500", "  4000", "16500", "-8500"},
    {"  1250", "  -1250", "   400", "1650", "-850"},      {" 125.0", " -125.0", "  40.0", "165.0", "-85.0"},
    {" 12.50", " -12.50", "  4.00", "16.50", "-8.50"},    {" 1.250", " -1.250", " 0.400", "1.650", "-0.850"},
    {"0.1250", "-0.1250", "0.0400", "0.1650", "-0.0850"}, {".01250", nullptr, ".00400", "0.01650", nullptr},
};

std::string Trimmed(const std::string& text) { return text.substr(std::min(text.find_first_not_of(' '), text.size())); }

TEST(ShippedFormatsTest, TheFilesAreInTheFormThatTheSystemWritesItself) {
  for (const Shipped& shipped : kShipped) {
    ShippedPlant plant(shipped.proto);
    const std::string content = plant.File(shipped.file);
    EXPECT_EQ(std::count(content.begin(), content.end(), '\n'), 116);
    plant.File(shipped.file) = "to be replaced";
    EXPECT_EQ(plant.Run(CfgAction::WriteFormatFile, shipped.proto), "");
    EXPECT_EQ(plant.File(shipped.file), content) << shipped.file;
  }
}

TEST(ShippedFormatsTest, EveryCombinationOfStatusBitsIsDecodedRight) {
  for (int proto : {kShort, kStandard}) {
    ShippedPlant plant(proto);
    const Tables& t = plant.tables;
    for (int code = 0; code < 8 * 4 * 32; ++code) {
      Frame frame;
      frame.decimals = code & 7;
      frame.increment = code >> 3 & 3;
      frame.net = code >> 5 & 1;
      frame.negative = code >> 6 & 1;
      frame.outOfRange = code >> 7 & 1;
      frame.motion = code >> 8 & 1;
      frame.kilograms = code >> 9 & 1;
      frame.print = code & 1;
      const Shown& shown = kShown[frame.decimals];
      if (frame.negative && shown.negative == nullptr) continue;  // a device may not send it

      std::string bytes = frame.Bytes(proto);
      if (frame.increment == 3) {  // parity in the top bit is not looked at
        for (std::size_t at : {1, 2, 3}) bytes[at] = static_cast<char>(bytes[at] | 0x80);
      }
      plant.Tick(kChannel, bytes);
      SCOPED_TRACE(code);
      ASSERT_EQ(t.ChanStatusBits[kChannel],
                frame.outOfRange * 1 + frame.motion * 2 + frame.net * 4 + !frame.kilograms * 8);
      ASSERT_EQ(plant.Lamp(Item::Net), frame.net);
      ASSERT_EQ(plant.Lamp(Item::Motion), frame.motion);
      ASSERT_EQ(plant.Lamp(Item::Units), !frame.kilograms);
      ASSERT_EQ(plant.Lamp(Item::Error), frame.outOfRange);
      ASSERT_EQ(t.ChanStatusText[kChannel], frame.outOfRange ? "OUT OF RANGE" : "Online...");

      const std::string weight = frame.negative ? shown.negative : shown.weight;
      std::string gross = weight, tare = "0", net = "0";
      if (frame.net) {
        net = weight;
        tare = proto == kStandard ? shown.tare : "";
        gross = proto == kShort ? Trimmed(weight) : frame.negative ? shown.difference : shown.sum;
        if (proto == kShort && frame.decimals == 7) gross = "0.01250";  // a sum has room for its zero
      }
      if (frame.outOfRange) {
        gross = net = "0";
        if (frame.net) tare = t.ChanTare[kChannel];
      }
      ASSERT_EQ(t.ChanGross[kChannel], gross);
      ASSERT_EQ(t.ChanTare[kChannel], tare);
      ASSERT_EQ(t.ChanNet[kChannel], net);
    }
  }
}

TEST(ShippedFormatsTest, APrintRequestIsTheFirstStatusField) {
  for (int proto : {kShort, kStandard}) {
    ShippedPlant plant(proto);
    Frame frame;
    ParseStatusData(plant.tables, frame.Bytes(proto), kChannel, proto);
    EXPECT_EQ(plant.tables.ChanStatusN[1][kChannel], "");
    frame.print = true;
    ParseStatusData(plant.tables, frame.Bytes(proto), kChannel, proto);
    EXPECT_EQ(plant.tables.ChanStatusN[1][kChannel], "PRINT REQUEST");
  }
}

TEST(ShippedFormatsTest, AFrameThatIsNotWholeGivesNoWeight) {
  for (int proto : {kShort, kStandard}) {
    const std::string whole = Frame{}.Bytes(proto);
    Frame notFilled, withPoint;
    notFilled.digits = "  1250";
    withPoint.digits = "012.50";
    std::vector<std::string> damaged = {std::string(1, '\0') + whole, notFilled.Bytes(proto), withPoint.Bytes(proto)};
    for (std::size_t at = 0; at + 1 < whole.size(); ++at) {
      damaged.push_back(whole.substr(at + 1));                        // joined in the middle of a frame
      damaged.push_back(whole.substr(0, at) + whole.substr(at + 1));  // a lost character
      damaged.push_back(whole.substr(0, at + 1) + "0" + whole.substr(at + 1));
    }
    for (const std::string& bytes : damaged) {
      SCOPED_TRACE(testing::PrintToString(bytes));
      ShippedPlant plant(proto);
      plant.Tick(kChannel, bytes);
      EXPECT_EQ(plant.tables.ChanGross[kChannel], "0");
      EXPECT_EQ(plant.tables.ChanStatusText[kChannel], "INVALIDATE");
      for (int frame = 0; frame < 2; ++frame) plant.Tick(kChannel, whole);
      EXPECT_EQ(plant.tables.ChanGross[kChannel], " 12.50");
      EXPECT_EQ(plant.tables.ChanStatusText[kChannel], "Online...");
    }
  }
}

TEST(ShippedFormatsTest, ALineThatLosesCharactersShowsOnlyWeightsThatWereSent) {
  std::mt19937 random(3);
  for (int proto : {kShort, kStandard}) {
    ShippedPlant plant(proto);
    int good = 0;
    for (int tick = 0; tick < 20000; ++tick) {
      std::string bytes;
      for (char character : Frame{}.Bytes(proto)) {
        if (random() % 50 != 0) bytes += character;
      }
      plant.Tick(kChannel, bytes);
      const std::string& gross = plant.tables.ChanGross[kChannel];
      ASSERT_TRUE(gross == " 12.50" || gross == "0" || gross.empty()) << tick << gross;
      good += gross == " 12.50";
    }
    EXPECT_GT(good, 10000);
  }
}

TEST(ShippedFormatsTest, AContinuousDeviceShowsItsNewestWholeFrameHoweverTheBytesArrive) {
  for (int proto : {kShort, kStandard}) {
    for (std::size_t chunk = 1; chunk <= 40; ++chunk) {
      ShippedPlant plant(proto);
      std::string line, sent;
      const std::size_t size = Frame{}.Bytes(proto).size();
      for (int weight = 0; weight < 60; ++weight) {
        Frame frame;
        frame.decimals = 2;
        frame.digits = std::to_string(100000 + weight);
        line += frame.Bytes(proto);
      }
      for (std::size_t at = 0; at < line.size(); at += chunk) {
        plant.Tick(kChannel, line.substr(at, chunk));
        const std::size_t whole = std::min(at + chunk, line.size()) / size;
        if (whole < 2) continue;
        ASSERT_EQ(plant.tables.ChanGross[kChannel], std::to_string(100000 + whole - 1)) << "chunk " << chunk;
      }
    }
  }
}

}  // namespace
