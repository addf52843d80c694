// The database operations of one command, each with its hand-over to the session's thread and back.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>

#include "platform/sqlite/sqlite_engine.h"

namespace {

/// A database of `records` records with four fields, in memory if the machine has a file system there: the time of a
/// disk is its own matter.
class Database {
 public:
  explicit Database(int records) {
    std::string folder = std::filesystem::exists("/dev/shm") ? "/dev/shm/tarvex-XXXXXX" : "/tmp/tarvex-XXXXXX";
    if (mkdtemp(folder.data())) folder_ = folder;
    session_.BeginCreateDatabase(Path());
    session_.End();
    Open();
    Execute("CREATE TABLE lots (id INTEGER PRIMARY KEY, name TEXT, weight REAL, seen TEXT)");
    Execute("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<" + std::to_string(records) +
            ") INSERT INTO lots SELECT i, 'Lot ' & i, i/4.0, #12/31/2026# FROM n");
  }
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;
  ~Database() {
    engine_.Close();
    std::filesystem::remove_all(folder_);
  }

  std::string Path() const { return folder_ + "/lots.db"; }
  void Open() {
    session_.BeginOpenDatabase(Path(), false);
    session_.End();
  }
  void Execute(const std::string& statement) {
    session_.BeginExecute(statement);
    session_.End();
  }
  Recordset Query(const std::string& statement) {
    session_.BeginOpenRecordset(statement, 200);
    return session_.End();
  }
  void Close() {
    session_.BeginCloseDatabase();
    session_.End();
  }

 private:
  std::string folder_;
  SqliteEngine engine_;
  DatabaseSession& session_ = engine_.Session(0);
};

constexpr const char* kInsert = "INSERT INTO lots (name, weight, seen) VALUES ('Lot', 2.5, #12/31/2026#)";
constexpr const char* kSelect = "SELECT * FROM lots WHERE id = 77";

void Execute(benchmark::State& state) {
  Database database(100);
  for (auto _ : state) database.Execute(kInsert);
}
BENCHMARK(Execute)->UseRealTime();

void OpenRecordset(benchmark::State& state) {
  Database database(100);
  for (auto _ : state) benchmark::DoNotOptimize(database.Query(kSelect));
}
BENCHMARK(OpenRecordset)->UseRealTime();

void WholeCommand(benchmark::State& state) {
  Database database(100);
  for (auto _ : state) {
    database.Open();
    benchmark::DoNotOptimize(database.Query(kSelect));
    database.Close();
  }
}
BENCHMARK(WholeCommand)->UseRealTime();

void CountRecords(benchmark::State& state) {
  Database database(static_cast<int>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(database.Query("SELECT * FROM lots"));
}
BENCHMARK(CountRecords)->Arg(1'000'000)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
