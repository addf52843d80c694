#include <gtest/gtest.h>

#include <random>

#include "core/scan_engine.h"
#include "protocol/number.h"
#include "tests/support/test_plant.h"

namespace {

constexpr int kTerminal = 0, kSerial = 1, kScale = 2;

/// A terminal and a serial client that send nonsense, databases that answer anything, and a scale behind them.
class GarbagePlant : public TestPlant {
 public:
  GarbagePlant() {
    tables.MaxChannel = kScale;
    for (const char* name : {"lit01", "lit02", "ptp01", "ptp02", "ptp03", "ptp04", "ptp05"}) Field(name);
    terminals.registered = true;
    tables.TerminalLinkUp = True;
    tables.ChanConnectUsing[kTerminal] = ConnectUsing::ArcNet;
    tables.ChanDeviceID[kTerminal] = "3";
    tables.ChanEnabled[kTerminal] = True;
    tables.ReinitChannel = kTerminal;
    Tick();
    Connect(kSerial, 0);
    Connect(kScale, 10);
    tables.ProtoTerminator[10] = '\r';
    tables.ProtoGrossEnable[10] = True;
    tables.ProtoGrossPos[10] = 1;
    tables.ProtoGrossLen[10] = 6;
    databases.onQuery = [this](const std::string&) {
      Recordset result{static_cast<std::int64_t>(Below(300)), Below(9), {}};
      result.values.assign(std::min<std::size_t>(static_cast<std::size_t>(result.recordCount) * result.fieldCount, 208),
                           Garbage(100));
      return result;
    };
    databases.onOperation = [this](const std::string&) {
      if (Below(6) == 0) throw RunTimeError(std::vector{3075, 2450, 40001, 13}[Below(4)], Garbage(40));
    };
  }
  std::string& Field(const std::string& name) { return terminals.field["/v3/" + name]; }
  std::size_t Below(std::size_t bound) { return chance() % bound; }
  std::string Garbage(std::size_t longest) {
    std::string text(Below(longest + 1), ' ');
    for (char& c : text) c = static_cast<char>(Below(4) == 0 ? Below(256) : ' ' + Below(95));
    return text;
  }

  std::mt19937 chance{7};
};

TEST(DatabaseClientGarbage, NothingThatAClientSendsStopsTheScaleBehindIt) {
  GarbagePlant plant;
  const char* const commands[] = {"SQL3:1", "SQL3:5", "SQL3:9", "****:00001:005",   "ACK1:",    "DONE:", "DADD:9",
                                  "DLOT:",  "FMT1:2", "TST1:",  "SQL3:99999999999", "ACK1:\xff"};
  const char* const statements[] = {"SELECT a FROM t", "INSERT INTO t", "SELECT a IN x WHERE b", "WHERE a IN (1)",
                                    "SELECT INTO IN q WHERE"};
  for (int round = 0; round < 20'000; ++round) {
    plant.Field("lit01") = plant.Below(3) == 0 ? plant.Garbage(44) : commands[plant.Below(std::size(commands))];
    plant.Field("lit02") = plant.Garbage(44);
    const std::string statement = statements[plant.Below(std::size(statements))];
    plant.Field("ptp0" + std::to_string(1 + plant.Below(5))) = plant.Below(2) == 0 ? statement : plant.Garbage(420);
    plant.system.midnightSeconds = static_cast<double>(plant.Below(86'400));
    plant.databases.slow = plant.Below(10) == 0;
    if (plant.Below(2) == 0) {
      plant.ports.port[kSerial].waiting +=
          plant.Below(2) == 0 ? "/dbname=x!/query=" + statement + "!\n" : plant.Garbage(60) + "\n";
    }
    char stream[16];
    std::snprintf(stream, sizeof stream, "%6d\r", round);
    plant.ports.port[kScale].waiting = stream;
    for (int tick = 0; tick < 3; ++tick) Timer1Tick(plant.engine);  // each client may end one with its fault
    ASSERT_EQ(NumericValue(plant.tables.ChanGross[kScale]), round);
    plant.tables.ChanTxQueue[kSerial].clear();
    plant.notice.boxes.clear();
  }
  EXPECT_LT(plant.LogText(LogType::Error).size(), 2'000'000U);
}

}  // namespace
