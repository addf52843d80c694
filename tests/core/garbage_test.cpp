#include <gtest/gtest.h>

#include <random>

#include "core/scan_engine.h"
#include "core/transmission.h"
#include "tests/support/test_plant.h"

namespace {

/// A fault costs the channels behind it their tick: few channels, and many seeds.
constexpr int kUsedChannels = 3;

/// Seeded source of everything a line or a hand-made format can hold.
class Garbage {
 public:
  explicit Garbage(unsigned seed) : random_(seed) {}
  int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
  bool Chance(int oneIn) { return Below(oneIn) == 0; }
  std::string Bytes(int most) {
    std::string bytes;
    for (int count = Below(most + 1); count > 0; --count) {
      bytes += Chance(3) ? "\r\n\x02 .-0N"[Below(9)] : static_cast<char>(Below(256));
    }
    return bytes;
  }
  int Number() {
    constexpr int kEdges[] = {0, 1, 2, 6, 13, 48, -1, 255, 256, 1310, 100000, 2147483647, -2147483647 - 1};
    return Chance(3) ? kEdges[Below(13)] : Below(20);
  }
  std::string Cell(int column) {
    constexpr const char* kNames[] = {"Motion", "Net Mode", "LB", "Decimal Place XXXX.XX", "Out Of Range", "=> GROSS"};
    constexpr const char* kFields[] = {"1 / MOTION", "2 / MODE", "3 / UNITS", "0 / ERROR", "(WEIGHT)", "STATUS9"};
    if (Chance(12)) return Bytes(6);
    if (column == 0) return kNames[Below(6)];
    if (column == 1) return kFields[Below(6)];
    if (column == 5) return Chance(5) ? "" : "X";
    std::string cell = std::to_string(Chance(8) ? Number() : Below(8));
    if (column < 4 && Chance(2)) cell += "b" + std::to_string(Below(10));
    return cell;
  }

 private:
  std::mt19937 random_;
};

void FillFormat(Tables& t, Garbage& garbage, int proto) {
  for (auto* cell : {&t.ProtoMaxStream, &t.ProtoTerminator, &t.ProtoStartChar, &t.ProtoGrossPos, &t.ProtoGrossLen,
                     &t.ProtoTarePos, &t.ProtoTareLen, &t.ProtoNetPos, &t.ProtoNetLen, &t.ProtoIdPos, &t.ProtoIdLen,
                     &t.ProtoCmdStartChar, &t.ProtoCmdTerminator}) {
    (*cell)[proto] = garbage.Number();
  }
  if (garbage.Chance(2)) t.ProtoTerminator[proto] = 13;
  for (auto* enable : {&t.ProtoGrossEnable, &t.ProtoTareEnable, &t.ProtoNetEnable, &t.ProtoIdEnable}) {
    (*enable)[proto] = garbage.Chance(4) ? False : True;
  }
  const int rows = garbage.Below(20);
  for (int row = 0; row < rows; ++row) {
    for (int column = 0; column < 6; ++column) t.ProtoStatusTable[proto].SetCell(row, column, garbage.Cell(column));
  }
  t.ProtoStatusCount[proto] = rows;
  for (int row = 0; row < kCommandRows; ++row) {
    t.ProtoCmdText[0][row][proto] = garbage.Chance(2) ? "T~" : garbage.Bytes(5) + "~~";
    t.ProtoCmdText[2][row][proto] = std::to_string(garbage.Below(5));
    t.ProtoCmdEnabled[row][proto] = True;
  }
}

TEST(GarbageTest, NoBytesUnderNoFormatDoMoreThanEndATick) {
  for (unsigned seed = 1; seed <= 300; ++seed) {
    TestPlant plant;
    Garbage garbage(seed);
    Tables& t = plant.tables;
    for (int ch = 0; ch < kUsedChannels; ++ch) {
      const int proto = 1 + garbage.Below(42);
      FillFormat(t, garbage, proto);
      plant.Connect(ch, proto);
      t.ChanDecimalPlaces[ch] = garbage.Below(8) - 1;
      t.ChanTimeout[ch] = garbage.Below(4);
      t.ChanTxDelay[ch] = garbage.Below(30);
      for (auto* option : {&t.ChanBidirectional, &t.ChanOpcEnabled, &t.ChanDdeServer, &t.ChanAsciiLog}) {
        (*option)[ch] = AsBoolean(garbage.Chance(2));
      }
    }
    for (int tick = 0; tick < 40; ++tick) {
      for (int ch = 0; ch < kUsedChannels; ++ch) {
        plant.ports.port[static_cast<std::size_t>(ch)].waiting += garbage.Bytes(garbage.Chance(20) ? 400 : 24);
        t.ChanCmdState[ch] = garbage.Chance(4) ? garbage.Below(5) : 0;
        t.ChanCmdStatus[ch] = 0;
        t.ChanCmdParm[ch] = garbage.Number() / 8.0;
      }
      const auto fault = Timer1Tick(plant.engine);
      if (fault) {
        const int number = fault->Number();
        EXPECT_TRUE(number == ErrorNumber::InvalidCall || number == ErrorNumber::Overflow ||
                    number == ErrorNumber::SubscriptOutOfRange)
            << "seed " << seed << ": " << fault->Description();
      }
      TxTimerTick(plant.engine);
      EXPECT_EQ(t.ScanBusy, False);
      for (int ch = 0; ch < kUsedChannels; ++ch) {
        const int most = t.ProtoMaxStream[t.ChanProtocol[ch]];
        EXPECT_LE(t.ChanRxBuffer[ch].size(), static_cast<std::size_t>(most > 0 && most <= 4096 ? most : 48));
      }
    }
  }
}

}  // namespace
