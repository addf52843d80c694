#include "terminal/sql_dialect.h"

#include <gtest/gtest.h>

#include <random>

#include "platform/run_time_error.h"

namespace {

struct Case {
  std::string given;
  std::string expected;
};

TEST(SqlDialect, RewritesWhatTheRulesTell) {
  const std::vector<Case> cases = {
      {"SELECT * FROM t WHERE d=#12/31/2026#", "SELECT * FROM t WHERE d='2026-12-31'"},
      {"#1/2/29# #1/2/30# #2026-2-3 4:05#", "'2029-01-02' '1930-01-02' '2026-02-03 04:05:00'"},
      {"#12:00 AM# #12:30:15 pm#", "'00:00:00' '12:30:15'"},
      {"WHERE a=True AND b<>false", "WHERE a=(-1) AND b<>0"},
      {"SELECT 1-True", "SELECT 1-(-1)"},
      {"SELECT left(a,2),RIGHT (b,1),Mid$(c,1)", "SELECT [left](a,2),[RIGHT] (b,1),Mid(c,1)"},
      {"SELECT a/2 /* 7/2 */, 'a/b', [a/b]", "SELECT a*1.0/2 /* 7/2 */, 'a/b', [a/b]"},
      {"DELETE * FROM t", "DELETE  FROM t"},
      {"SELECT TOP 3 a FROM t ORDER BY a; -- end", "SELECT   a FROM t ORDER BY a LIMIT 3; -- end"},
      {"SELECT DISTINCT TOP 3 a FROM t --end", "SELECT DISTINCT   a FROM t LIMIT 3 --end"},
      {"SELECT a FROM (SELECT TOP 2 a FROM (t) ORDER BY a) WHERE b IN (SELECT TOP 1 b FROM u)",
       "SELECT a FROM (SELECT   a FROM (t) ORDER BY a LIMIT 2) WHERE b IN (SELECT   b FROM u LIMIT 1)"},
      {"SELECT TOP 2 a FROM t UNION ALL SELECT TOP 1 b FROM u ORDER BY 1",
       "SELECT * FROM (SELECT   a FROM t LIMIT 2) UNION ALL SELECT * FROM (SELECT   b FROM u LIMIT 1) ORDER BY 1"},
      {"SELECT a, (b) INTO [new t] FROM s WHERE c=1", "CREATE TABLE [new t] AS SELECT a, (b)   FROM s WHERE c=1"},
      {"SELECT TOP 1 a & b INTO t FROM s", "CREATE TABLE t AS SELECT   tarvex_join(a , b)   FROM s LIMIT 1"},
      {"SELECT TOP 1 a FROM t WHERE a & b", "SELECT   a FROM t WHERE tarvex_join(a , b) LIMIT 1"},
      {"SELECT a&b&'c' AS d", "SELECT tarvex_join(a,b,'c') AS d"},
      {"WHERE x=-a.b+1 & Left(c,1) & (d & e) LIKE 'f'",
       "WHERE x=tarvex_join(-a.b+1 , [Left](c,1) , (tarvex_join(d , e))) LIKE 'f'"},
      {"SELECT x & CASE WHEN a THEN b & c END, d",
       "SELECT tarvex_join(x , CASE WHEN a THEN tarvex_join(b , c) END), d"},
      {"IN (SELECT a) AND (b) & x'00'", "IN (SELECT a) AND tarvex_join((b) , x'00')"},
      {"SELECT a & & b", "SELECT a || || b"},
  };
  for (const Case& row : cases) EXPECT_EQ(TranslateSql(row.given), row.expected);
}

TEST(SqlDialect, LeavesEverythingElseAsItIs) {
  const std::vector<std::string> untouched = {
      "",
      " \t",
      "SELECT a FROM t LEFT JOIN u ON (t.a = u.a) RIGHT JOIN v",
      "INSERT INTO t VALUES ('#1/2/2026# & True', \"TOP 3 Left(\", [a & b], `True`, 'it''s & ''')",
      "SELECT a /* & True #1/2/2026# */ FROM t -- Left( & TOP 3",
      "SELECT t.True, top, Date FROM t WHERE a IS TRUE OR b IS NOT FALSE",
      "SELECT #13-45-2026#, #, #1-2#",
      "SELECT TOP 10 PERCENT a FROM t",
      "SELECT a INTO t IN 'other.db' FROM s",
      "INSERT INTO t SELECT a FROM s WHERE b='open & ",
      "SELECT [a & b",
      "/* & ",
  };
  for (const std::string& statement : untouched) EXPECT_EQ(TranslateSql(statement), statement);
}

/// What stands in quotes and comments, found without the tokenizer.
std::vector<std::string> ProtectedParts(const std::string& text) {
  std::vector<std::string> parts;
  for (std::size_t at = 0; at < text.size();) {
    std::string close;
    if (text[at] == '\'' || text[at] == '"' || text[at] == '`') close = text[at];
    if (text[at] == '[') close = "]";
    if (text.compare(at, 2, "--") == 0) close = "\n";
    if (text.compare(at, 2, "/*") == 0) close = "*/";
    if (close.empty()) {
      ++at;
      continue;
    }
    const std::size_t found = text.find(close, at + (close == "*/" ? 2 : 1));
    const std::size_t end = found == std::string::npos ? text.size() : found + close.size();
    parts.push_back(text.substr(at, end - at));
    at = end;
  }
  return parts;
}

TEST(SqlDialect, GarbageNeverRaisesAndQuotedTextStays) {
  const std::string pieces[] = {
      "SELECT ", "TOP 3 ", "INTO t ", "FROM s ",        "Left(", "a & b", "#1/2/2026#", "'q & #'", "\"True\"",
      "[x & y]", "`z`",    "True ",   "CASE ",          "END ",  "(",     ")",          "UNION ",  "ORDER BY ",
      "--c\n",   "/*d*/",  ";",       "DELETE * FROM ", "'",     "\"",    "[",          "]",       "#",
      "&",       "-",      ".",       "x'00'",          "\xff",  "5"};
  const int seed = GTEST_FLAG_GET(random_seed);
  std::mt19937 random(static_cast<unsigned>(seed));
  for (int round = 0; round < 4000; ++round) {
    std::string statement;
    for (auto count = random() % 40; count > 0; --count) statement += pieces[random() % std::size(pieces)];
    if (!statement.empty()) statement[random() % statement.size()] = static_cast<char>(random() % 256);
    const std::string result = TranslateSql(statement);
    std::size_t at = 0;
    for (const std::string& part : ProtectedParts(statement)) {
      at = result.find(part, at);
      ASSERT_NE(at, std::string::npos) << "seed " << seed << ": " << part << " of: " << statement << "\n" << result;
      at += part.size();
    }
  }
  for (const char* piece : {"(", "a&", "SELECT TOP 1 ", "#", "CASE ", "-", "a.", "['", "a&("}) {  // deep or long
    std::string statement;
    while (statement.size() < 200'000) statement += piece;
    EXPECT_GE(TranslateSql(statement).size(), 100'000u) << piece;
  }
}

class Noon : public SqlSurroundings {
 public:
  std::string LocalTime() const override { return "2026-12-31 12:00:05"; }
  bool Stopped() const override { return true; }
};

SqlValue Call(std::string_view name, const std::vector<SqlValue>& arguments) {
  for (const SqlFunction& function : SqlFunctions()) {
    if (function.name == name) return function.call(arguments, Noon{});
  }
  throw RunTimeError(ErrorNumber::Internal, "no such function: " + std::string(name));
}

TEST(SqlDialect, LikeIsThatOfThePatternsDialect) {
  const struct {
    std::string text, pattern;
    bool fits;
  } cases[] = {
      {"Lot 12", "lot*", true},
      {"Lot 12", "*1?", true},
      {"Lot 12", "lot ##", true},
      {"Lot 1x", "lot ##", false},
      {"b", "[a-c]", true},
      {"B", "[!a-c]", false},
      {"*", "[*]", true},
      {"50%", "50[%]", true},
      {"a_b", "?_b", true},
      {"axb", "?_b", false},
      {"abc", "a%", true},
      {"abc", "A_c", true},
      {"abc", "a_", false},
      {"", "%", true},
      {"", "?", false},
      {"\xC3\xA9", "?", true},
      {"a[b", "?[b", true},
      {"aXbXc", "*x*x?", true},
      {"abab", "*ab", true},
      {"x-y", "x[a-]y", true},
      {"\xC3\xA9", "[\xC3\xA0-\xC3\xB0]", true},
      {"", "", true},
      {"a", "", false},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(Call("like", {row.pattern, row.text}), SqlValue(std::int64_t{row.fits}))
        << row.text << " " << row.pattern;
  }
  EXPECT_EQ(Call("like", {"a!_*", "a_*", "!"}), SqlValue(std::int64_t{1}));
  EXPECT_EQ(Call("like", {"a!_", "axb", "!"}), SqlValue(std::int64_t{0}));
  EXPECT_EQ(Call("like", {SqlValue{}, "a"}), SqlValue{});
  const std::string endless(100'000, 'a');
  EXPECT_THROW(Call("like", {"*" + std::string(40'000, 'a') + "b*c", endless}), RunTimeError) << "is not stopped";
}

TEST(SqlDialect, FunctionsGiveWhatTheOldOnesGave) {
  const SqlValue null;
  const auto whole = [](std::int64_t number) { return SqlValue(number); };
  const struct {
    const char* name;
    std::vector<SqlValue> arguments;
    SqlValue expected;
  } cases[] = {
      {"left", {"\xC3\xA9t\xC3\xA9", whole(2)}, "\xC3\xA9t"},
      {"right", {"\xC3\xA9t\xC3\xA9", whole(2)}, "t\xC3\xA9"},
      {"right", {"ab", whole(5)}, "ab"},
      {"left", {null, whole(2)}, null},
      {"mid", {"abcdef", whole(3)}, "cdef"},
      {"mid", {"abcdef", whole(3), whole(2)}, "cd"},
      {"mid", {"abc", whole(9), whole(2)}, ""},
      {"ucase", {"aZ\xC3\xA9"}, "AZ\xC3\xA9"},
      {"lcase", {"aZ"}, "az"},
      {"len", {"\xC3\xA9\xFF"}, whole(2)},
      {"len", {2.5}, whole(3)},
      {"val", {" 12.5 kg"}, 12.5},
      {"str", {whole(5)}, " 5"},
      {"str", {-2.5}, "-2.5"},
      {"int", {-8.4}, whole(-9)},
      {"int", {1e300}, 1e300},
      {"nz", {null}, ""},
      {"nz", {null, whole(7)}, whole(7)},
      {"nz", {"a", whole(7)}, "a"},
      {"tarvex_join", {null, whole(2), 2.5, 1e20, "x"}, "22.51E+20x"},
      {"now", {}, "2026-12-31 12:00:05"},
      {"date", {}, "2026-12-31"},
      {"time", {}, "12:00:05"},
      {"format", {2.345, "0.00"}, "2.35"},
      {"format", {whole(7), "000"}, "007"},
      {"format", {whole(1234567), "#,##0"}, "1,234,567"},
      {"format", {-123456.5, "#,##0.00"}, "-123,456.50"},
      {"format", {"0.5", "0.00"}, "0.50"},
      {"format", {"none", "0.00"}, "none"},
      {"format", {null, "0.00"}, null},
      {"format", {"2026-02-03 04:05:06", "mm/dd/yy"}, "02/03/26"},
      {"format", {"2/3/2026", "mm/dd/yyyy hh:nn:ss"}, "02/03/2026 00:00:00"},
      {"format", {"2026-02-03 04:05:06", "hh:mm:ss"}, "04:05:06"},
      {"format", {"04:05:06", "h:nn yyyy-mm-d"}, "4:05 1899-12-30"},
  };
  for (const auto& row : cases) EXPECT_EQ(Call(row.name, row.arguments), row.expected) << row.name;
  EXPECT_THROW(Call("left", {"a", whole(-1)}), RunTimeError);
  EXPECT_THROW(Call("mid", {"a", whole(0)}), RunTimeError);
  EXPECT_THROW(Call("format", {"2026-02-03", "Long Date"}), RunTimeError);
  EXPECT_THROW(Call("format", {5.0, "mm/dd"}), RunTimeError);
}

}  // namespace
