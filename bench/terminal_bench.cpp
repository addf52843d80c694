// What terminals and database clients cost the scan: a read of a mailbox over the stand-in for the terminals' library,
// a query from the command in the mailbox to its first packet, and a thousand inserts a minute from eight serial
// clients while 24 scales go on at 20 streams a second. The database lies in the folder for temporary files. usage:
// terminal_bench [SECONDS]

#include <poll.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <vector>

#include "bench/child.h"
#include "core/scan_engine.h"
#include "platform/sqlite/sqlite_engine.h"
#include "platform/vant/vant_library.h"
#include "terminal/terminal_link.h"
#include "tests/platform/machine.h"
#include "tests/support/test_plant.h"
#include "tools/sim/terminal_network.h"

namespace {

/// The clock of the machine in a plant whose rest is in memory.
class RealClock : public HandTurnedSystem {
 public:
  using HandTurnedSystem::HandTurnedSystem;
  std::int64_t Milliseconds() const override { return Now() / 1'000'000; }
};

struct Figures {
  std::vector<double> values;  ///< milliseconds

  double At(double part) {
    std::sort(values.begin(), values.end());
    return values[std::min(values.size() - 1, static_cast<std::size_t>(part * static_cast<double>(values.size())))];
  }
};

bool Print(const char* what, Figures& figures, double part, double aim) {
  const double measured = figures.At(part);
  std::printf("%-44s %8zu %10.3f %10.3f %10.3f %8.3f\n", what, figures.values.size(), figures.At(0.5), measured,
              figures.At(1), aim);
  return measured < aim;
}

template <typename Step>
double Time(const Step& step) {
  const std::int64_t start = Now();
  step();
  return static_cast<double>(Now() - start) / 1e6;
}

/// Terminal 3 on the network, whose fields this program writes itself.
class Network {
 public:
  Network() {
    setenv("TARVEX_VANTAPI", STAND_IN, 1);
    setenv("TARVEX_VANT_SOCKET", path_.c_str(), 1);
  }
  ~Network() {
    ended_ = true;
    serving_.join();
  }
  void Write(const std::string& field, const std::string& text) {
    const std::lock_guard lock(guard_);
    network_.Answer("WRITE /v3/" + field + " " + std::to_string(text.size()) + " " + Hex(text));
  }

 private:
  static std::string Hex(const std::string& text) {
    std::string hex;
    for (const char c : text) {
      char digits[3];
      std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned char>(c));
      hex += digits;
    }
    return hex;
  }
  static std::vector<sim::TerminalSettings> Terminals() {
    std::vector<sim::TerminalSettings> terminals(1);
    terminals[0].node = 3;
    return terminals;
  }

  TemporaryFolder folder_;
  std::string path_ = folder_ / "network";
  std::mutex guard_;
  sim::TerminalNetwork network_{Terminals(), path_};
  std::atomic<bool> ended_ = false;
  std::thread serving_{[this] {
    while (!ended_) {
      std::vector<pollfd> watches;
      network_.AddWatches(watches);
      poll(watches.data(), watches.size(), 5);
      const std::lock_guard lock(guard_);
      network_.Run(0);
    }
  }};
};

/// The real library and databases in a plant whose ports are in memory.
struct Plant : TestPlant {
  Plant() {
    tables.ProgramFolder = folder.Path();
    databases_.Session(0).BeginCreateDatabase(folder / "plant.db");
    databases_.Session(0).IsDone(1000);
    Run("CREATE TABLE weights (id INTEGER PRIMARY KEY, channel INTEGER, gross REAL, net REAL, made TEXT)");
    Run("INSERT INTO weights VALUES (1, 1, 12.5, 12.5, 'today')");
  }
  void Run(const std::string& statement) {
    DatabaseSession& session = databases_.Session(0);
    session.BeginOpenDatabase(folder / "plant.db", false);
    session.IsDone(1000);
    session.End();
    session.BeginExecute(statement);
    session.IsDone(1000);
    session.End();
    session.BeginCloseDatabase();
    session.IsDone(1000);
  }

  TemporaryFolder folder;
  RealClock clock{"2026-11-16 13:04:05"};
  VantLibrary library{[this] { return folder.Path(); },
                      [](const std::string& fault) { std::fprintf(stderr, "%s\n", fault.c_str()); }};
  SqliteEngine databases_;
  TerminalLink link{live, tables, library, databases_};
  Engine live{tables,           clock,         engine.events,      engine.ports,
              engine.files,     engine.notice, engine.log,         engine.configuration,
              engine.publisher, link,          engine.startupForm, engine.mainForm,
              engine.dialogs};
};

bool MeasureTerminal() {
  Network network;
  Plant plant;
  plant.tables.MaxChannel = 0;
  plant.tables.ChanConnectUsing[0] = ConnectUsing::ArcNet;
  plant.tables.ChanDeviceID[0] = "3";
  plant.tables.ChanEnabled[0] = plant.tables.ChanReopenPending[0] = True;
  for (int tick = 0; tick < 3; ++tick) Timer1Tick(plant.live);
  Figures reads, queries;
  std::string record;
  for (int round = 0; round < 20'000; ++round) {
    reads.values.push_back(Time([&] { plant.library.VantRead("/v3/lit01", 40, record); }));
  }
  for (int round = 0; round < 500; ++round) {
    network.Write("lit02", "plant.db");
    network.Write("ptp01", "SELECT channel, gross, net, made FROM weights WHERE id = 1");
    network.Write("lit01", "SQL3:1");
    queries.values.push_back(Time([&] { Timer1Tick(plant.live); }));
    if (plant.tables.ChanDbRowCount[0] != 6) throw std::runtime_error("no result within the tick");
    plant.tables.ChanDbRowCount[0] = 0;
  }
  const bool read = Print("read of a mailbox, ms; half, 99 of 100, most", reads, 0.99, 0.1);
  return Print("query to first packet, within one tick", queries, 0.99, plant.tables.Timer1Interval) && read;
}

bool MeasureClients(int seconds) {
  constexpr int kClients = 8, kScales = 24;
  constexpr double kInsertsASecond = 1000.0 / 60;
  Plant plant;
  plant.tables.MaxChannel = kClients + kScales - 1;
  for (int ch = 0; ch < kClients; ++ch) plant.Connect(ch, 0);
  plant.tables.ProtoTerminator[10] = '\r';
  plant.tables.ProtoGrossEnable[10] = True;
  plant.tables.ProtoGrossPos[10] = 1;
  plant.tables.ProtoGrossLen[10] = 6;
  for (int ch = kClients; ch < kClients + kScales; ++ch) plant.Connect(ch, 10);
  Figures ticks;
  const std::int64_t start = Now();
  int sent = 0;
  for (int tick = 0; Now() - start < seconds * 1'000'000'000LL; ++tick) {
    const double elapsed = static_cast<double>(Now() - start) / 1e9;
    for (; sent < elapsed * kInsertsASecond; ++sent) {
      plant.ports.port[static_cast<std::size_t>(sent % kClients)].waiting +=
          "/DBNAME=plant.db!/QUERY=INSERT INTO weights (channel, gross) VALUES (" + std::to_string(sent % kClients) +
          ", 12.5)!\n";
    }
    for (int ch = kClients; tick % 2 == 0 && ch < kClients + kScales; ++ch) {
      char stream[16];
      std::snprintf(stream, sizeof stream, "%6d\r", tick);
      plant.ports.port[static_cast<std::size_t>(ch)].waiting += stream;
    }
    ticks.values.push_back(Time([&] { Timer1Tick(plant.live); }));
    for (int ch = 0; ch < kClients; ++ch) plant.tables.ChanTxQueue[ch].clear();
    const std::int64_t next = start + (tick + 1) * 25'000'000LL;
    if (next > Now()) std::this_thread::sleep_for(std::chrono::nanoseconds(next - Now()));
  }
  std::printf("%d inserts sent\n", sent);
  return Print("tick beside a thousand inserts a minute, ms", ticks, 0.99, plant.tables.Timer1Interval);
}

}  // namespace

int main(int count, char** texts) {
  const int seconds = count > 1 ? std::atoi(texts[1]) : 20;
  if (seconds < 1 || seconds > 1000) {
    std::fputs("usage: terminal_bench [SECONDS], 1 to 1000\n", stderr);
    return 64;
  }
  std::printf("%-44s %8s %10s %10s %10s %8s\n", "", "times", "half", "99 of 100", "most", "aim");
  const bool terminal = MeasureTerminal();
  const bool met = MeasureClients(seconds) && terminal;
  std::printf("Aims: %s\n", met ? "met" : "missed");
  return met ? 0 : 1;
}
