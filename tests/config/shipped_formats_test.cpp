#include <algorithm>
#include <fstream>
#include <sstream>

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
  /// Caption and weights.
  std::string Shown() const {
    const std::string& caption = tables.ChanStatusText[kChannel];
    const std::string weights = caption + "|" + tables.ChanGross[kChannel] + "|" + tables.ChanNet[kChannel];
    return caption == "INVALIDATE" ? weights : weights + "|" + tables.ChanTare[kChannel];
  }
  /// What is shown of a frame with nothing before it.
  std::string ShownOf(const std::string& bytes) {
    tables.ChanRxBuffer[kChannel].clear();
    Tick(kChannel, bytes);
    return Shown();
  }
};

/// A frame as a device builds it.
struct Frame {
  int decimals = 4;
  int increment = 1;
  bool net = false, negative = false, outOfRange = false, motion = false, kilograms = false;
  std::string digits = "001250";
  std::string tare = "000400";

  std::string Bytes(int proto) const {
    std::string bytes = "\x02";
    bytes += static_cast<char>(0x20 | increment << 3 | decimals);
    bytes += static_cast<char>(0x20 | kilograms << 4 | motion << 3 | outOfRange << 2 | negative << 1 | int{net});
    return bytes + " " + digits + (proto == kStandard ? tare : "") + "\r";
  }
};

constexpr char kRefused[] = "INVALIDATE|0|0";

/// What the digits 001250 are in each decimal position.
constexpr const char* kShown[] = {"125000", " 12500", "  1250", " 125.0", " 12.50", " 1.250", "0.1250", ".01250"};

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
      if (frame.negative && frame.decimals == 7) continue;  // a device may not send it

      std::string bytes = frame.Bytes(proto);
      if (frame.increment == 3) {  // parity in the top bit is not looked at
        for (std::size_t at : {1, 2, 3}) bytes[at] = static_cast<char>(bytes[at] | 0x80);
      }
      plant.Tick(kChannel, bytes);
      SCOPED_TRACE(code);
      ASSERT_EQ(t.ChanStatusBits[kChannel],
                frame.outOfRange * 1 + frame.motion * 2 + frame.net * 4 + !frame.kilograms * 8);
      ASSERT_EQ(plant.Lamp(Item::Net), frame.net);
      ASSERT_EQ(plant.Lamp(Item::Error), frame.outOfRange);
      ASSERT_EQ(t.ChanStatusText[kChannel], frame.outOfRange ? "OUT OF RANGE" : "Online...");

      if (frame.outOfRange) continue;
      std::string weight = kShown[frame.decimals];
      if (frame.negative) weight.insert(weight.find_first_not_of(' '), "-");
      ASSERT_EQ((frame.net ? t.ChanNet : t.ChanGross)[kChannel], weight);
    }
  }
}

TEST(ShippedFormatsTest, AFrameThatIsNotWholeGivesNoWeight) {
  for (int proto : {kShort, kStandard}) {
    const std::string whole = Frame{}.Bytes(proto);
    std::vector<std::string> damaged = {std::string(1, '\0') + whole};
    for (std::size_t at = 0; at + 1 < whole.size(); ++at) {
      damaged.push_back(whole.substr(at + 1));                        // joined in the middle of a frame
      damaged.push_back(whole.substr(0, at) + whole.substr(at + 1));  // a lost character
      damaged.push_back(whole.substr(0, at + 1) + "0" + whole.substr(at + 1));
    }
    for (const std::string& bytes : damaged) {
      SCOPED_TRACE(testing::PrintToString(bytes));
      ShippedPlant plant(proto);
      plant.Tick(kChannel, bytes);
      EXPECT_EQ(plant.Shown(), kRefused);
      for (int frame = 0; frame < 2; ++frame) plant.Tick(kChannel, whole);
      EXPECT_EQ(plant.Shown(), "Online...| 12.50|0|0");
    }
  }
}

/// Bits of STX, A, B and C that must be right, and those that carry a meaning; the rest is not looked at.
constexpr unsigned kFixedBits[] = {0x20, 0x60, 0x60, 0x20};
constexpr unsigned kMeaningBits[] = {0, 0x1F, 0x1F, 0x08};

TEST(ShippedFormatsTest, ACharacterThatTheLineChangedGivesTheWeightOfAWellFormedFrameOrNone) {
  Frame net, negative, outOfRange;
  net.net = net.kilograms = true;
  negative.negative = negative.motion = true;
  negative.decimals = 2;
  outOfRange.outOfRange = true;
  for (int proto : {kShort, kStandard}) {
    ShippedPlant plant(proto), reference(proto);
    const std::string other = Frame{.digits = "098765"}.Bytes(proto);
    const std::string shownOfOther = reference.ShownOf(other);
    for (const Frame& frame : {net, negative, outOfRange}) {
      const std::string sent = frame.Bytes(proto);
      const std::size_t end = sent.size() - 1;
      for (std::size_t at = 0; at <= end; ++at) {
        for (unsigned code = 0; code < 256; ++code) {
          std::string came = sent, meant = sent;
          came[at] = static_cast<char>(code);
          const unsigned was = static_cast<unsigned char>(sent[at]);
          bool refused = code == '\r';  // cuts the frame in two
          if (at < 4) {
            refused |= ((code ^ was) & kFixedBits[at]) != 0;
            meant[at] = static_cast<char>((was & ~kMeaningBits[at]) | (code & kMeaningBits[at]));
          } else if (at < end) {
            refused |= code < '0' || code > '9';
            meant = came;
          } else if (code == was) {
            continue;
          }
          SCOPED_TRACE(testing::PrintToString(came));
          ASSERT_EQ(plant.ShownOf(other), shownOfOther);
          plant.Tick(kChannel, came);
          ASSERT_EQ(plant.Shown(), refused ? kRefused : at == end ? shownOfOther : reference.ShownOf(meant));
          plant.Tick(kChannel, other);  // a frame without its end is one with the next, and refused with it
          ASSERT_EQ(plant.Shown(), code == '\r' || at == end ? kRefused : shownOfOther);
        }
      }
    }
  }
}

}  // namespace
