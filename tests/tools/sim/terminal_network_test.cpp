#include "tools/sim/terminal_network.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <fstream>
#include <mutex>
#include <thread>

#include "core/scan_engine.h"
#include "platform/sqlite/sqlite_engine.h"
#include "platform/vant/vant_library.h"
#include "terminal/terminal_link.h"
#include "tests/platform/machine.h"
#include "tests/support/test_plant.h"
#include "tools/sim/plant_file.h"

namespace {

using namespace sim;
using testing::HasSubstr;

TEST(SimTerminal, AStatementIsCutWhereNoBlankStands) {
  std::string statement;
  for (int word = 0; word < 90; ++word) statement += "ab cd" + std::to_string(word) + "  ";
  const std::vector<std::string> pieces = CutStatement(statement);
  std::string joined;
  for (const std::string& piece : pieces) {
    EXPECT_LE(piece.size(), 399U);
    EXPECT_NE(piece.front(), ' ');
    joined += piece;
  }
  EXPECT_EQ(joined, statement);
  EXPECT_EQ(pieces.size(), 3U);
}

TEST(SimTerminal, TheNetworkRefusesWhatTheLibraryWould) {
  TerminalSettings terminal;
  terminal.node = 3;
  TerminalNetwork network({terminal}, "");
  const std::pair<const char*, const char*> exchanges[] = {
      {"READ /v3/lit01 40", "-2"},
      {"REGISTER 125", "0"},
      {"REGISTER 125", "-1"},
      {"READ /v3/lit01 40", "0 "},
      {"READ /v4/lit01 40", "4"},
      {"READ /v3/lit09 40", "65"},
      {"READ /v3/lit01 0", "67"},
      {"READ v3 40", "4"},
      {"WRITE /v3/wt101 2 3131", "69"},
      {"WRITE /v3/lit03 4 61622020", "0"},
      {"READ /v3/lit03 40", "0 6162"},
      {"KEY 3 0 48", "0"},
      {"KEY 9 0 48", "4"},
      {"nonsense", "4"},
      {"CLOSE", "0"},
  };
  for (const auto& [request, reply] : exchanges) EXPECT_EQ(network.Answer(request), reply) << request;
  network.Answer("REGISTER 125");
  EXPECT_THAT(*network.Obey("show v3"), HasSubstr("keys 48"));
  network.Obey("pull v3");
  EXPECT_EQ(network.Answer("READ /v3/lit01 40"), "10060");
  network.Obey("plug v3");
  network.Obey("silence v3 5");
  EXPECT_EQ(network.Answer("READ /v3/lit01 40"), std::nullopt);
  EXPECT_FALSE(network.Obey("pull 3")) << "that is a device";
}

/// The real library binding, stand-in, network, database engine and logic, with the clock and screen of a test.
class TerminalPlant {
 public:
  explicit TerminalPlant(const std::vector<TerminalSettings>& terminals)
      : network(terminals, folder / "network"), serving([this] {
          const auto start = std::chrono::steady_clock::now();
          while (!ended) {
            std::vector<pollfd> watches;
            network.AddWatches(watches);
            poll(watches.data(), watches.size(), 5);
            const std::lock_guard lock(guard);
            network.Run(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
          }
        }) {
    setenv("TARVEX_VANTAPI", STAND_IN, 1);
    setenv("TARVEX_VANT_SOCKET", (folder / "network").c_str(), 1);
    plant.tables.ProgramFolder = folder.Path();
    plant.tables.MaxChannel = 1;
    for (int ch = 0; ch < 2; ++ch) {
      plant.tables.ChanConnectUsing[ch] = ConnectUsing::ArcNet;
      plant.tables.ChanProtocol[ch] = ch == 0 ? 0 : 2;
      plant.tables.ChanDeviceID[ch] = std::to_string(ch + 3);
      plant.tables.ChanTimeout[ch] = 2000;
      plant.tables.ChanEnabled[ch] = plant.tables.ChanReopenPending[ch] = True;
    }
  }
  ~TerminalPlant() {
    ended = true;
    serving.join();
    unsetenv("TARVEX_VANTAPI");
    unsetenv("TARVEX_VANT_SOCKET");
  }
  /// Ticks until the condition holds.
  bool TickUntil(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition() && std::chrono::steady_clock::now() < end) {
      Timer1Tick(live);
      std::this_thread::yield();
    }
    return condition();
  }

  std::string ErrorLog() { return plant.files.content[folder / "ErrorLog-Tarvex.txt"]; }

  TemporaryFolder folder;
  TestPlant plant;
  VantLibrary library{[this] { return folder.Path(); }, [](const std::string& fault) { ADD_FAILURE() << fault; }};
  SqliteEngine databases;
  TerminalLink link{live, plant.tables, library, databases};
  Engine live = plant.EngineWith({.terminal = &link});
  TerminalNetwork network;
  std::mutex guard;  ///< of what the network knows
  std::atomic<bool> ended = false;
  std::thread serving;
};

TEST(SimTerminal, AProgramInATerminalUsesTheManagerAsItsDatabase) {
  const PlantSettings settings = ReadPlant(R"(
      [terminal]
      node = 3
      database = lots.db
      every = 0
      transaction = SQL CREATE TABLE lots (n INTEGER, name TEXT)  -- UPDATE makes it an action
      transaction = SQL INSERT INTO lots WITH RECURSIVE c(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM c LIMIT 20) SELECT i, 'lot ' & i FROM c
      transaction = SQL SELECT TOP 20 n, name FROM lots
      transaction = LOT
      transaction = SQL SELECT n FROM nowhere
      transaction = SQL SELECT name FROM lots WHERE n > 99
      [terminal]
      node = 4
      load = 12.5 for 5)",
                                           "test");
  TerminalPlant terminals(settings.terminals);
  std::ofstream(terminals.folder / "lots.db").close();
  const auto report = [&] {
    const std::lock_guard lock(terminals.guard);
    return terminals.network.Terminals()[0].Report();
  };
  std::string history;
  EXPECT_TRUE(terminals.TickUntil([&] {
    history += report() + "\n";
    return history.find(": 12 transactions") != std::string::npos;
  }));
  for (const char* seen : {"| 1 | lot 1 | 2 | lot 2 |", "| 20 | lot 20 | 01/02/26 | 03:04:05\n", "last PLOT:600203",
                           "1 refused, 0 without an answer; last refused", "last not found\n"}) {
    EXPECT_THAT(history, HasSubstr(seen));
  }
  EXPECT_EQ(terminals.plant.tables.ChanGross[1], "12.5");
  EXPECT_THAT(terminals.ErrorLog(), HasSubstr("JET Database Error: 3078"));

  // The network falls silent: no tick waits for it long, and the weight goes.
  {
    const std::lock_guard lock(terminals.guard);
    terminals.network.Obey("silence v4 60");
  }
  const auto start = std::chrono::steady_clock::now();
  for (int tick = 0; tick < 2; ++tick) Timer1Tick(terminals.live);  // a refused statement may end the first one
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(400));
  EXPECT_EQ(terminals.plant.tables.ChanEnabled[1], False);
}

}  // namespace
