#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/run_time_error.h"
#include "platform/sqlite/sqlite_engine.h"
#include "tests/platform/machine.h"

namespace {

using testing::ElementsAre;

class SqliteTest : public testing::Test {
 protected:
  SqliteTest() {
    session.BeginCreateDatabase(path);
    End();
    Open();
    Execute("CREATE TABLE parts (name TEXT UNIQUE, weight REAL, count INTEGER, made TEXT)");
    Execute("INSERT INTO parts VALUES ('Bolt M8', 2.5, 100, #11/16/2026 13:00:00#)");
    Execute("INSERT INTO parts VALUES ('Nut M8', 0.1, -3, NULL)");
  }
  Recordset End() {
    EXPECT_TRUE(session.IsDone(20'000));
    return session.End();
  }
  void Open(bool readOnly = false) {
    session.BeginOpenDatabase(path, readOnly);
    End();
  }
  void Execute(const std::string& statement) {
    session.BeginExecute(statement);
    End();
  }
  Recordset Query(const std::string& statement, std::size_t values = 200) {
    session.BeginOpenRecordset(statement, values);
    return End();
  }
  /// The only value of a query, or the fault.
  std::string Value(const std::string& statement) {
    try {
      const Recordset result = Query(statement);
      return result.values.empty() ? "nothing" : result.values.front();
    } catch (const RunTimeError& fault) {
      return std::to_string(fault.Number()) + " " + fault.Description();
    }
  }
  int Fault(const std::function<void()>& step) { return FaultNumber(step); }

  TemporaryFolder folder;
  std::string path = folder / "parts.db";
  SqliteEngine engine{std::chrono::milliseconds(300)};
  DatabaseSession& session = engine.Session(0);
};

TEST_F(SqliteTest, RecordsComeAsTextsInTheirOrder) {
  const Recordset all = Query("SELECT * FROM parts ORDER BY name");
  EXPECT_EQ(all.recordCount, 2);
  EXPECT_EQ(all.fieldCount, 4U);
  EXPECT_THAT(all.values, ElementsAre("Bolt M8", "2.5", "100", "2026-11-16 13:00:00", "Nut M8", "0.1", "-3", ""));
  EXPECT_EQ(Query("SELECT * FROM parts", 1).values.size(), 4U) << "whole records";
  EXPECT_EQ(Query("SELECT * FROM parts WHERE count > 1000").recordCount, 0);
  EXPECT_EQ(Value("SELECT 1e20"), "1E+20");
  EXPECT_EQ(Value("SELECT x'610062'"), std::string("a\0b", 3));
  EXPECT_EQ(Query("DELETE FROM parts").recordCount, 0);
  EXPECT_EQ(Value("SELECT count(*) FROM parts"), "0") << "a statement without a result runs";
}

TEST_F(SqliteTest, ClientsKeepTheirDialect) {
  const std::pair<const char*, const char*> cases[] = {
      {"SELECT TOP 1 name FROM parts ORDER BY name DESC", "Nut M8"},
      {"SELECT name FROM parts WHERE name LIKE 'nut*'", "Nut M8"},
      {"SELECT name FROM parts WHERE name LIKE '%T M_'", "Bolt M8"},
      {"SELECT [name] & '/' & count FROM parts WHERE made >= #11/16/2026#", "Bolt M8/100"},
      {"SELECT Left(name, 3) & Right(name, 1) & Mid(name, 2, 2) FROM parts WHERE count > 0", "Bol8ol"},
      {"SELECT IIf(count < 0, 'short', 'ok') FROM parts WHERE name = 'Nut M8'", "short"},
      {"SELECT Nz(made, 'never') FROM parts WHERE count < 0", "never"},
      {"SELECT Format(1234567.891, '#,##0.00')", "1,234,567.89"},
      {"SELECT Format(made, 'mm/dd/yy hh:mm') FROM parts WHERE count > 0", "11/16/26 13:00"},
      {"SELECT Val('12.5kg') + Int(-2.5) + Len('abc')", "12.5"},
      {"SELECT UCase(LCase('Ab')) & Str(5)", "AB 5"},
      {"SELECT count(*) FROM parts WHERE (count > 0) = True", "0"},
      {"SELECT length(Now()) & length(Date()) & length(Time())", "19108"},
      {"SELECT a.name FROM parts a LEFT JOIN parts b ON a.name = b.name AND False ORDER BY 1", "Bolt M8"},
  };
  for (const auto& [statement, value] : cases) EXPECT_EQ(Value(statement), value) << statement;
  Query("SELECT name, count INTO copy FROM parts");
  EXPECT_EQ(Value("SELECT count(*) FROM copy"), "2");
}

TEST_F(SqliteTest, FaultsAreSortedAsClientsKnowThem) {
  const std::pair<const char*, int> cases[] = {
      {"SELEC 1", 3075},
      {"SELECT (1", 3075},
      {"SELECT 1; SELECT 2", 3142},
      {"SELECT a FROM nowhere", 3078},
      {"SELECT nowhere FROM parts", 3061},
      {"INSERT INTO parts VALUES ('Bolt M8', 1, 1, '')", 3022},
      {"SELECT abs(-9223372036854775808)", 2450},
      {"ATTACH '/tmp/other.db' AS other", 3051},
      {"VACUUM INTO '/tmp/other.db'", 3051},
      {"SELECT load_extension('x')", 3051},
      {"PRAGMA journal_mode = WAL", 3051},
      {"PRAGMA writable_schema = 1", 3051},
      {"PRAGMA optimize", 3051},
      {"PRAGMA table_info(parts)", 0},
      {"SELECT 1;  ", 0},
      {"", 0},
  };
  for (const auto& [statement, number] : cases) EXPECT_EQ(Fault([&] { Query(statement); }), number) << statement;
  EXPECT_EQ(Fault([&] { Execute("SELECT 1"); }), 3065);
  EXPECT_EQ(Value("SELECT nowhere FROM parts"), "3061 no such column: nowhere");
  Open(true);
  EXPECT_EQ(Fault([&] { Execute("DELETE FROM parts"); }), 3051);
  EXPECT_EQ(Value("SELECT count(*) FROM parts"), "2");
}

TEST_F(SqliteTest, FilesThatAreNotThereOrNoneAreToldApart) {
  const auto opening = [&](const std::string& file) {
    return Fault([&] {
      session.BeginOpenDatabase(file, false);
      End();
      Query("SELECT 1 FROM sqlite_master");
    });
  };
  std::ofstream(folder / "text.db") << std::string(4096, 'x');
  EXPECT_EQ(opening(folder / "none.db"), 3024);
  EXPECT_FALSE(std::filesystem::exists(folder / "none.db"));
  EXPECT_EQ(opening(folder.Path()), 3044);
  EXPECT_EQ(opening(folder / "text.db"), 3343);
  EXPECT_EQ(Fault([&] {
              session.BeginCreateDatabase(path);
              End();
            }),
            3204);
  // Replaced, cut and deleted between two commands.
  EXPECT_EQ(opening(path), 0);
  std::filesystem::resize_file(path, 5000);
  EXPECT_EQ(opening(path), 3343);
  std::filesystem::remove(path);
  EXPECT_EQ(opening(path), 3024);
}

TEST_F(SqliteTest, ALockOfSomebodyElseIsWaitedForAShortTime) {
  DatabaseSession& other = engine.Session(1);
  const auto take = [&](const char* statement) {
    other.BeginExecute(statement);
    ASSERT_TRUE(other.IsDone(5000));
    other.End();
  };
  other.BeginOpenDatabase(path, false);
  ASSERT_TRUE(other.IsDone(5000));
  other.End();
  take("BEGIN EXCLUSIVE");
  EXPECT_EQ(Fault([&] { Execute("DELETE FROM parts"); }), 3260);
  take("COMMIT");
  EXPECT_EQ(Fault([&] { Execute("DELETE FROM parts"); }), 0);
}

TEST_F(SqliteTest, WhatRunsForeverIsInterruptedAndWhatIsGivenUpIsSoonOver) {
  const std::string forever = "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT max(i) FROM n";
  EXPECT_EQ(Fault([&] { Query(forever); }), 3059);
  EXPECT_EQ(Value("SELECT count(*) FROM parts"), "2") << "the database is open still";
  session.BeginOpenRecordset(forever, 1);
  EXPECT_FALSE(session.IsDone(0));
  session.Abandon();
  Open();
  EXPECT_EQ(Value("SELECT count(*) FROM parts"), "2");
  session.BeginOpenRecordset(forever, 1);
  engine.Close();  // does not wait for it
}

TEST_F(SqliteTest, LargeResultsAreCountedAndKeptWithinBounds) {
  const Recordset million =
      Query("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT 300000) SELECT i, i FROM n", 200);
  EXPECT_EQ(million.recordCount, 300'000);
  EXPECT_EQ(million.values.size(), 200U);
  EXPECT_EQ(Query("SELECT Format(replace(hex(zeroblob(5000000)), '0', 'x'))").values.at(0).size(), 65'536U);
  const FullDisk full(64 * 1024);
  EXPECT_EQ(Fault([&] { Execute("INSERT INTO parts (name) VALUES (zeroblob(1000000))"); }), 3026);
}

}  // namespace
