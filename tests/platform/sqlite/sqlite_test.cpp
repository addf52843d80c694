#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <fstream>

#include "platform/run_time_error.h"
#include "platform/sqlite/sqlite_engine.h"
#include "tests/platform/machine.h"

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using Values = std::vector<std::string>;

constexpr const char* kEndless = "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n) SELECT i FROM n";

/// Another program that has the database open.
class OtherProgram {
 public:
  explicit OtherProgram(const std::string& path) { EXPECT_EQ(sqlite3_open(path.c_str(), &database_), SQLITE_OK); }
  ~OtherProgram() { sqlite3_close(database_); }
  void Run(const std::string& statement) {
    EXPECT_EQ(sqlite3_exec(database_, statement.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << statement;
  }

 private:
  sqlite3* database_ = nullptr;
};

class Sqlite : public ::testing::Test {
 protected:
  Recordset End() {
    EXPECT_TRUE(session_->IsDone(60'000)) << "it does not end";
    return session_->End();
  }
  void Create(const std::string& path) { session_->BeginCreateDatabase(path), End(); }
  void Open(const std::string& path, bool readOnly = false) { session_->BeginOpenDatabase(path, readOnly), End(); }
  void Execute(const std::string& statement) { session_->BeginExecute(statement), End(); }
  Recordset Query(const std::string& statement, std::size_t values = 200) {
    session_->BeginOpenRecordset(statement, values);
    return End();
  }
  Values ValuesOf(const std::string& statement) { return Query(statement).values; }
  /// The fault of a statement, which is executed if it has no result.
  std::string Fault(const std::string& statement) {
    const bool selects =
        statement.starts_with("SELECT") || statement.starts_with("WITH") || statement.starts_with("PRAGMA");
    return FaultOf([&] { selects ? static_cast<void>(Query(statement)) : Execute(statement); });
  }
  static std::string FaultOf(const std::function<void()>& step) {
    try {
      step();
      return "none";
    } catch (const RunTimeError& fault) {
      return std::to_string(fault.Number()) + " " + fault.Description();
    }
  }
  void MakeScales() {
    Create(path_);
    Open(path_);
    Execute("CREATE TABLE scales (id INTEGER PRIMARY KEY, name TEXT UNIQUE, weight REAL, seen TEXT)");
    Execute(
        "INSERT INTO scales VALUES (1,'Lot 1',2.5,#12/31/2026#),(2,'Lot 22',1e20,NULL),(3,'Bin',-7.0,#1/1/2027 9:05#)");
  }
  void Restart(const SqliteLimits& limits) {
    engine_ = std::make_unique<SqliteEngine>(limits);
    session_ = &engine_->Session(0);
  }

  TemporaryFolder folder_;
  const std::string path_ = folder_ / "scales file.db";
  std::unique_ptr<SqliteEngine> engine_ = std::make_unique<SqliteEngine>();
  DatabaseSession* session_ = &engine_->Session(0);
};

TEST_F(Sqlite, MakesAndFindsDatabasesByTheirNames) {
  Create(path_);
  std::string head(15, ' ');
  std::ifstream(path_).read(head.data(), 15);
  EXPECT_EQ(head, "SQLite format 3");
  EXPECT_THAT(FaultOf([&] { Create(path_); }), HasSubstr("3204 Database already exists: " + path_));
  EXPECT_THAT(FaultOf([&] { Create(folder_ / "none/x.db"); }), HasSubstr("3044 "));

  for (const std::string& missing : {folder_ / "x.db", std::string(":memory:"), std::string("file:x?mode=memory"),
                                     std::string(), path_ + "/x.db", path_ + std::string("\0.db", 4)}) {
    EXPECT_THAT(FaultOf([&] { Open(missing); }), HasSubstr("3024 ")) << missing;
    EXPECT_THAT(FaultOf([&] { Execute("CREATE TABLE t (a)"); }), HasSubstr("3420 ")) << missing;
  }
  EXPECT_FALSE(std::filesystem::exists(folder_ / "x.db"));
  EXPECT_THAT(FaultOf([&] { Open(folder_.Path()); }), HasSubstr("3343 "));
  std::ofstream(folder_ / "text.db") << std::string(5000, 'x');
  EXPECT_THAT(FaultOf([&] { Open(folder_ / "text.db"); }), HasSubstr("3343 file is not a database: " + folder_.Path()));

  std::filesystem::create_symlink(path_, folder_ / "link\xFF.db");
  Open(folder_ / "link\xFF.db");
  Execute("CREATE TABLE t (a)");
  OtherProgram(path_).Run("INSERT INTO t VALUES (1)");
  EXPECT_THAT(ValuesOf("SELECT a FROM t"), ElementsAre("1"));
}

TEST_F(Sqlite, ValuesAreTextAndComeInWholeRecords) {
  MakeScales();
  Recordset found = Query("SELECT * FROM scales ORDER BY id", 5);
  EXPECT_EQ(found.recordCount, 3);
  EXPECT_EQ(found.fieldCount, 4u);
  EXPECT_THAT(found.values, ElementsAre("1", "Lot 1", "2.5", "2026-12-31", "2", "Lot 22", "1E+20", ""));
  EXPECT_THAT(ValuesOf("SELECT 0.1+0.2, 1/3.0, 3.0, 9007199254740993, x'410042', 1e999, NULL"),
              ElementsAre("0.3", "0.333333333333333", "3", "9007199254740993", std::string("A\0B", 3), "Inf", ""));
  EXPECT_TRUE(Query("SELECT * FROM scales", 0).values.empty());
  found = Query("SELECT name INTO copies FROM scales");
  EXPECT_EQ(found.recordCount, 0);
  EXPECT_EQ(Query("SELECT * FROM copies").recordCount, 3);
  session_->BeginCloseRecordset();
  End();
  session_->BeginCloseDatabase();
  End();
  EXPECT_THAT(Fault("SELECT 1"), HasSubstr("3420 "));
}

TEST_F(Sqlite, TheOldDialectRunsInTheEngine) {
  MakeScales();
  const struct {
    std::string statement;
    Values expected;
  } cases[] = {
      {"SELECT TOP 1 [name] FROM scales ORDER BY id DESC", {"Bin"}},
      {"SELECT id FROM (SELECT TOP 2 id FROM scales ORDER BY id) WHERE id > 1", {"2"}},
      {"SELECT name FROM scales WHERE name LIKE 'lot ?'", {"Lot 1"}},
      {"SELECT name FROM scales WHERE name LIKE 'LOT _2'", {"Lot 22"}},
      {"SELECT name FROM scales WHERE name LIKE \"b*\" AND name NOT LIKE '*#'", {"Bin"}},
      {"SELECT id & '/' & Left(name, 3) & seen FROM scales WHERE id = 2", {"2/Lot"}},
      {"SELECT IIf(weight < 0, Right(name, 2), 'x'), Nz(seen, 'never') FROM scales WHERE id > 1 ORDER BY id",
       {"x", "never", "in", "2027-01-01 09:05:00"}},
      {"SELECT Format(seen, 'mm/dd/yy hh:nn:ss'), Format(weight, \"#,##0.0\") FROM scales WHERE id = 3",
       {"01/01/27 09:05:00", "-7.0"}},
      {"SELECT name FROM scales WHERE seen >= #1/1/2027# OR False", {"Bin"}},
      {"SELECT Len(Now()), Now() >= Date() & ' ' & '00', date('2026-01-31', '+1 day'), True",
       {"19", "1", "2026-02-01", "-1"}},
  };
  for (const auto& row : cases) EXPECT_EQ(ValuesOf(row.statement), row.expected) << row.statement;
}

TEST_F(Sqlite, ResultsOfTheEngineAreSortedIntoFaults) {
  MakeScales();
  Execute("CREATE TABLE big (v BLOB)");
  const struct {
    std::string statement;
    std::string fault;
  } cases[] = {
      {"SELECT name FROM scale", "3078 no such table: scale"},
      {"INSERT INTO scale VALUES (1)", "3078 "},
      {"SELECT nam FROM scales", "3061 no such column: nam"},
      {"INSERT INTO scales (nam) VALUES (1)", "3061 "},
      {"DELETE FROM scales WHERE name = ?", "3061 No value is given for ?"},
      {"UPDATE scales SET name = @n", "3061 No value is given for @n"},
      {"SELEC 1", "3075 near \"SELEC\": syntax error"},
      {"SELECT 'a", "3075 "},
      {"SELECT Left('a')", "3075 "},
      {"SELECT Chr(1)", "3085 "},
      {"SELECT 1; DELETE FROM scales", "3075 Characters found after end of SQL statement."},
      {"SELECT 1; nonsense", "3075 Characters found after end of SQL statement."},
      {" -- nothing", "3075 The statement is empty."},
      {std::string("SELECT 1\0; DELETE FROM scales", 29), "3075 "},
      {"SELECT 1;; -- end\n", "none"},
      {"INSERT INTO scales VALUES (1,'x',1,1)", "3022 UNIQUE constraint failed: scales.id"},
      {"INSERT INTO scales VALUES ('x','x',1,1)", "3464 "},
      {"CREATE TABLE scales (a)", "3010 "},
      {"SELECT Mid(name, 0) FROM scales", "2450 Mid: 0 is no position or length"},
      {"SELECT sum(v) FROM (SELECT 9223372036854775807 AS v UNION ALL SELECT 1)", "2450 integer overflow"},
      {"COMMIT", "3034 "},
      {"INSERT INTO big VALUES (zeroblob(100000000))", "3163 "},
      {"UPDATE scales SET name='last_update' WHERE id=9", "none"},
  };
  for (const auto& row : cases) EXPECT_THAT(Fault(row.statement), HasSubstr(row.fault)) << row.statement;
  EXPECT_THAT(FaultOf([&] { Execute("SELECT 1"); }), HasSubstr("3065 "));
  EXPECT_EQ(Query("SELECT * FROM scales").recordCount, 3) << "a second statement ran";
}

TEST_F(Sqlite, AStatementTouchesItsOwnDatabaseAlone) {
  MakeScales();
  const std::string other = folder_ / "other.db";
  const std::vector<std::string> refused = {"ATTACH '" + other + "' AS o",
                                            "ATTACH 'oth' || 'er' AS o",
                                            "ATTACH '' AS o",
                                            "DETACH main",
                                            "VACUUM INTO '" + other + "'",
                                            "SELECT load_extension('x')",
                                            "PRAGMA journal_mode=WAL",
                                            "PRAGMA writable_schema(1)",
                                            "PRAGMA user_version = 5",
                                            "PRAGMA optimize",
                                            "PRAGMA temp_store_directory = '/'"};
  for (const std::string& statement : refused) {
    EXPECT_THAT(Fault(statement), HasSubstr("3051 ")) << statement;
  }
  EXPECT_EQ(Fault("ATTACH 'x' AS o"), "3051 not authorized: ATTACH is refused");
  EXPECT_EQ(Fault("SELECT nam FROM scales"), "3061 no such column: nam") << "told of the refusal before";
  EXPECT_FALSE(std::filesystem::exists(other));
  EXPECT_EQ(Query("PRAGMA table_info(scales)").recordCount, 4);
  EXPECT_THAT(ValuesOf("PRAGMA journal_mode"), ElementsAre("delete"));
  EXPECT_THAT(ValuesOf("PRAGMA user_version"), ElementsAre("0"));

  Open(path_, true);
  EXPECT_THAT(Fault("DELETE FROM scales"), HasSubstr("3051 "));
  EXPECT_THAT(Fault("SELECT id INTO copies FROM scales"), HasSubstr("3051 "));
  EXPECT_EQ(Query("SELECT * FROM scales").recordCount, 3);
}

TEST_F(Sqlite, ADatabaseThatOthersHoldIsBusyAndFreeAgain) {
  MakeScales();
  OtherProgram other(path_);
  other.Run("BEGIN IMMEDIATE");
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_THAT(Fault("DELETE FROM scales"), HasSubstr("3260 database is locked: " + path_));
  const auto waited = std::chrono::steady_clock::now() - begin;
  EXPECT_GE(waited, std::chrono::milliseconds(240));
  EXPECT_LT(waited, std::chrono::milliseconds(2000));
  EXPECT_EQ(Query("SELECT * FROM scales").recordCount, 3) << "others may read meanwhile";
  other.Run("COMMIT; BEGIN EXCLUSIVE");
  EXPECT_THAT(FaultOf([&] { Open(path_); }), HasSubstr("3260 "));
  session_->BeginOpenDatabase(path_, false);
  other.Run("COMMIT");  // while it waits
  End();
  Execute("DELETE FROM scales");
}

TEST_F(Sqlite, ADatabaseThatVanishesOrIsReplacedIsTakenAsItIs) {
  MakeScales();
  std::filesystem::remove(path_);
  EXPECT_THAT(Fault("DELETE FROM scales"), HasSubstr("3027 "));
  EXPECT_THAT(FaultOf([&] { Open(path_); }), HasSubstr("3024 "));
  Create(path_);
  Open(path_);
  EXPECT_THAT(Fault("SELECT * FROM scales"), HasSubstr("3078 "));

  Execute("CREATE TABLE t (a)");
  Execute("INSERT INTO t SELECT zeroblob(50000)");
  std::fstream file(path_, std::ios::in | std::ios::out | std::ios::binary);
  file.seekp(4096) << std::string(8192, '\xEE');
  file.close();
  Open(path_);
  EXPECT_THAT(Fault("SELECT a FROM t"), HasSubstr("3343 database disk image is malformed: " + path_));
}

TEST_F(Sqlite, AFullDiskIsToldAndChangesNothing) {
  MakeScales();
  {
    const FullDisk full(40'000);
    EXPECT_THAT(Fault("INSERT INTO scales (weight) VALUES (zeroblob(200000))"), HasSubstr("3026 "));
  }
  {
    const FullDisk full(0);
    EXPECT_THAT(FaultOf([&] { Create(folder_ / "new.db"); }), HasSubstr("3026 "));
  }
  EXPECT_FALSE(std::filesystem::exists(folder_ / "new.db"));
  Open(path_);
  EXPECT_EQ(Query("SELECT * FROM scales").recordCount, 3);
}

TEST_F(Sqlite, AnEndlessStatementEnds) {
  MakeScales();
  session_->BeginOpenRecordset(kEndless, 4);
  EXPECT_FALSE(session_->IsDone(20));
  EXPECT_EQ(FaultNumber([&] { session_->BeginCloseDatabase(); }), ErrorNumber::Internal);
  session_->Abandon();
  session_->BeginExecute("DELETE FROM scales");  // waits for the end of that, and finds all closed
  EXPECT_THAT(FaultOf([&] { End(); }), HasSubstr("3420 "));

  session_->BeginOpenRecordset("SELECT 1", 1);
  session_->Abandon();
  EXPECT_TRUE(session_->IsDone(0));
  EXPECT_EQ(End().recordCount, 0) << "the result of what was abandoned";
  Open(path_);
  EXPECT_EQ(Query(kEndless + std::string(" LIMIT 10000")).recordCount, 10'000);

  DatabaseSession& second = engine_->Session(1);
  second.BeginOpenDatabase(path_, false);
  EXPECT_TRUE(second.IsDone(5000)) << "a session holds another one";
  second.End();
  second.BeginOpenRecordset(kEndless, 4);
  engine_->Close();

  SqliteLimits limits;
  limits.statement = std::chrono::milliseconds(50);
  Restart(limits);
  Open(path_);
  EXPECT_THAT(Fault(kEndless), HasSubstr("3059 interrupted: the statement ran longer than its limit of 0.05 seconds"));
  EXPECT_THAT(Fault("SELECT replace(hex(zeroblob(1000000)), '0', 'a') LIKE '*" + std::string(20'000, 'a') + "b*c'"),
              HasSubstr("3059 "));
  EXPECT_EQ(Query("SELECT * FROM scales").recordCount, 3) << "the session goes on";
}

TEST_F(Sqlite, LargeResultsAreCountedAndCut) {
  MakeScales();
  const Recordset many = Query("SELECT i, i FROM (" + std::string(kEndless) + " LIMIT 1000000)", 3);
  EXPECT_EQ(many.recordCount, 1'000'000);
  EXPECT_THAT(many.values, ElementsAre("1", "1", "2", "2"));

  Execute("CREATE TABLE long (t)");
  Execute("INSERT INTO long SELECT 'x' & replace(hex(zeroblob(5000000)), '00', '\xC3\xA9')");
  const Values values = ValuesOf("SELECT t, length(t), zeroblob(100000) FROM long");
  EXPECT_EQ(values[0].size(), 65'535u) << "cut within a character";
  EXPECT_EQ(values[0].substr(65'533), "\xC3\xA9");
  EXPECT_EQ(values[1], "5000001");
  EXPECT_EQ(values[2].size(), 65'536u);
}

}  // namespace
