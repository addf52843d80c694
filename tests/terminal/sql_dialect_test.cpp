#include "terminal/sql_dialect.h"

#include <gtest/gtest.h>

#include <random>

namespace {

TEST(SqlDialect, StatementsAreRewrittenWhereTheirDialectDiffers) {
  const std::pair<const char*, const char*> cases[] = {
      {"SELECT a FROM t WHERE d = #11/23/2026#", "SELECT a FROM t WHERE d = '2026-11-23'"},
      {"SELECT #1/2/26 1:05:09 PM#", "SELECT '2026-01-02 13:05:09'"},
      {"SELECT #2026-01-02#, #12:30#", "SELECT '2026-01-02', '12:30:00'"},
      {"SELECT TOP 5 a FROM t;", "SELECT  a FROM t LIMIT 5;"},
      {"SELECT a FROM (SELECT DISTINCT TOP 2 a FROM t) s", "SELECT a FROM (SELECT DISTINCT  a FROM t LIMIT 2) s"},
      {"SELECT a, b INTO [new t] FROM t WHERE b = True", "CREATE TABLE [new t] AS SELECT a, b  FROM t WHERE b = -1"},
      {"DELETE * FROM t", "DELETE  FROM t"},
      {"SELECT left (a, 1) FROM t LEFT JOIN s", "SELECT \"Left\" (a, 1) FROM t LEFT JOIN s"},
      {"SELECT a & b, Now( )", "SELECT a || b, datetime('now','localtime')"},
  };
  for (const auto& [statement, rewritten] : cases) EXPECT_EQ(RewriteStatement(statement), rewritten);
  for (const char* untouched :
       {"", "SELECT * FROM t", "SELECT 'TOP 5 & #1/1/26# True', \"a & b\", [Now()], `False` FROM t",
        "SELECT a -- & True\nFROM t /* #1/1/26# */", "INSERT INTO t SELECT * FROM s", "SELECT 'it''s & so'",
        "SELECT 'open &", "SELECT TOP 5 PERCENT a FROM t", "SELECT a # b # c, t.true, date('now') FROM t",
        "SELECT [open & True"}) {
    EXPECT_EQ(RewriteStatement(untouched), untouched);
  }
}

TEST(SqlDialect, PatternsAreOfTheDialectOrOfTheEngine) {
  const struct {
    const char* text;
    const char* pattern;
    bool like;
  } cases[] = {
      {"Bolt M8", "b*8", true},
      {"Bolt M8", "?olt*", true},
      {"Bolt M8", "*#", true},
      {"Bolt M8", "[a-c]*", true},
      {"Bolt M8", "[!a-c]*", false},
      {"Bolt M8", "*M9", false},
      {"Bolt", "b%t", true},
      {"Bolt", "b_l_", true},
      {"Bolt", "b_l", false},
      {"50% off", "50%*", true},
      {"5a", "5_*", false},
      {"", "*", true},
      {"aaaaaaaaab", "*a*a*a*c", false},
      {"[", "[", true},
  };
  for (const auto& c : cases) EXPECT_EQ(IsLike(c.text, c.pattern), c.like) << c.text << " like " << c.pattern;
  EXPECT_TRUE(IsLike("50%", "50!%", "!"));
  EXPECT_FALSE(IsLike("500", "50!%", "!"));
}

/// What stands in single quotes, in its order.
std::string QuotedParts(const std::string& statement) {
  std::string parts;
  for (std::size_t at = statement.find('\''); at != std::string::npos; at = statement.find('\'', at)) {
    const std::size_t end = statement.find('\'', at + 1);
    if (end == std::string::npos) break;
    parts += statement.substr(at, end - at + 1);
    at = end + 1;
  }
  return parts;
}

TEST(SqlDialect, NothingThatAClientSendsIsTooStrange) {
  std::mt19937 chance(1);
  const std::string seeds[] = {"SELECT TOP 3 'a & b' & c FROM (t) WHERE d LIKE '*x' AND e = True INTO ;",
                               "SELECT [a], Left('q', 1) INTO n FROM t -- 'x'\n/* & */ UNION SELECT TOP 2"};
  for (int round = 0; round < 4000; ++round) {
    std::string statement = seeds[round % 2];
    for (int change = 0; change < 4; ++change) {
      const std::size_t at = chance() % statement.size();
      const std::size_t size = chance() % 6;
      switch (chance() % 3) {
        case 0:
          statement.erase(at, size);
          break;
        case 1:
          statement.insert(at, statement.substr(chance() % statement.size(), size));
          break;
        default:
          statement[at] = static_cast<char>(chance() % 256);
      }
      if (statement.empty()) statement = "x";
    }
    const std::string rewritten = RewriteStatement(statement);
    const bool plain = statement.find_first_of("\"`[-/#") == std::string::npos;
    if (plain && rewritten.find("'now'") == std::string::npos) {
      EXPECT_EQ(QuotedParts(rewritten), QuotedParts(statement)) << statement;
    }
    IsLike(statement, rewritten, statement);
  }
}

}  // namespace
