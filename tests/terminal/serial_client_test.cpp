#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/test_plant.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr int kCh = 1;
const std::string kNow = "\"11/16/26\"\n\"13:04:05\"\n\"!\"\n";

class SerialClientTest : public testing::Test {
 protected:
  SerialClientTest() {
    plant.Connect(kCh, 0);
    tables.ChanAuditLog[kCh] = True;
    plant.system.dateTime = "2026-11-16 13:04:05";
  }
  /// The reply that a line gets; empty for none.
  std::string Reply(const std::string& line) {
    plant.Tick(kCh, line);
    return std::exchange(tables.ChanTxQueue[kCh], {});
  }
  void Records(std::int64_t count, std::vector<std::string> values) {
    plant.databases.onQuery = [=](const std::string&) { return Recordset{count, 2, values}; };
  }

  TestPlant plant;
  Tables& tables = plant.tables;
};

TEST_F(SerialClientTest, AStatementIsALineAndItsReplyIsLines) {
  Records(2, {"Bolt", "8", "Nut", "9"});
  EXPECT_EQ(Reply("noise /query=select * from t!/dbname=c:\\x.mdb!\r\n"), "\"COUNT=2\"\n\"Bolt\"\n\"8\"\n" + kNow)
      << "the fields of the first record only";
  EXPECT_THAT(plant.databases.asked,
              ElementsAre("open /plant/c:\\x.mdb", "query select * from t", "close records", "close", "idle"));
  EXPECT_EQ(tables.ChanStatusText[kCh], "Idle...");
  Records(0, {});
  EXPECT_EQ(Reply("/DBNAME=/d/x.mdb!/QUERY=SELECT a FROM t!\n"), "\"NOT FOUND\"\n" + kNow);
  EXPECT_EQ(Reply("/DBNAME=x!/QUERY=DELETE FROM t!\n"), "\"EXECUTED\"\n\"!\"\n");
  EXPECT_THAT(plant.LogText(LogType::Received), HasSubstr("/DBNAME=x!/QUERY=DELETE"));
  EXPECT_THAT(plant.LogText(LogType::Sql), HasSubstr("Completed: DELETE FROM t..."));
}

TEST_F(SerialClientTest, ALineComesInPiecesAndASecondOneWaitsForNewInput) {
  EXPECT_EQ(Reply("/DBNAME=x!/QUE"), "");
  EXPECT_EQ(Reply("RY=DELETE FROM a!\n/DBNAME=x!/QUERY=DELETE FROM b!\n"), "\"EXECUTED\"\n\"!\"\n");
  EXPECT_EQ(Reply(""), "");
  EXPECT_EQ(Reply(" "), "\"EXECUTED\"\n\"!\"\n");
  EXPECT_THAT(plant.databases.asked, testing::Contains("execute DELETE FROM b"));
  tables.ChanRxBuffer[kCh].clear();
  EXPECT_EQ(Reply(std::string(20000, 'x')), "");
  EXPECT_THAT(plant.LogText(LogType::Error), HasSubstr("More than 16384 characters wait"));
  EXPECT_EQ(Reply("/DBNAME=x!/QUERY=DELETE FROM c!\n"), "") << "the end of that line";
  EXPECT_EQ(Reply("/DBNAME=x!/QUERY=DELETE FROM a!\n"), "\"EXECUTED\"\n\"!\"\n");
}

TEST_F(SerialClientTest, LinesWithoutBothKeysAndOtherDriversGetNoReply) {
  for (const char* line : {"\n", "/DBNAME=x!\n", "/QUERY=SELECT 1!\n", "/DBNAME=!/QUERY=SELECT 1!\n"}) {
    tables.ChanDbName[kCh].clear();
    EXPECT_EQ(Reply(line), "") << line;
  }
  EXPECT_TRUE(plant.databases.asked.empty());
  Reply("/QUERY=SELECT 1!/DBNAME=x\n");
  EXPECT_EQ(plant.databases.asked.front(), "open /plant/Error:Invalid DBNAME");
  EXPECT_EQ(Reply("/DBNAME=x!/QUERY=SELECT a FROM t WHERE b IN (1)!\n"), "");
  EXPECT_THAT(plant.LogText(LogType::Error), HasSubstr("Critical Error: 5"));
  EXPECT_EQ(tables.ChanIndicator[Item::Error][kCh], False);
  tables.ChanDbDriver[kCh] = 1;
  EXPECT_EQ(Reply("/DBNAME=x!/QUERY=SELECT 1!\n"), "");
}

TEST_F(SerialClientTest, ARefusedStatementIsAnsweredPastTheQueueAndToldOnce) {
  plant.databases.onOperation = [](const std::string&) { throw RunTimeError(3024, "no file \\x: gone"); };
  tables.ChanInteractiveDbErrors[kCh] = tables.SpeechEnabled = True;
  for (int time = 0; time < 2; ++time) EXPECT_EQ(Reply("/DBNAME=x!/QUERY=SELECT 1!\n"), "");
  EXPECT_THAT(plant.ports.port[kCh].sent, ElementsAre("\"ERROR\"\n\"!\"\n", "\"ERROR\"\n\"!\"\n"));
  ASSERT_EQ(plant.notice.boxes.size(), 1U);
  EXPECT_EQ(plant.notice.boxes[0].caption, "Tarvex VantODBC Error");
  EXPECT_EQ(plant.notice.boxes[0].text,
            "Channel: 2  JET Database Error: 3024  no file \\x: gone\r\nPlease Contact Orvane Technical Services...");
  EXPECT_THAT(plant.notice.spoken, ElementsAre(HasSubstr("no file  Backslash, x colon,  gone")));
  EXPECT_EQ(tables.ChanStatusText[kCh], "Ready...");
  EXPECT_EQ(tables.ChanDbName[kCh], "x") << "a line with a statement alone goes to the database that failed";
  plant.databases.onOperation = nullptr;
  EXPECT_EQ(Reply("/QUERY=DELETE FROM t!\n"), "\"EXECUTED\"\n\"!\"\n");
}

TEST_F(SerialClientTest, TheFileOfRightsRefusesWhatItDoesNotName) {
  std::string& file = plant.files.content["/plant/Tarvex-Database.Cfg"];
  file = "2,\"read.db\",\"read\"\r\n2,/plant/write.db,write\n4,\"other.db\",\"write\"\n";
  plant.engine.configuration.ReadDatabaseRights();
  const struct {
    const char* line;
    const char* opened;  ///< nullptr: refused
  } cases[] = {
      {"/DBNAME=read.db!/QUERY=SELECT 1!\n", "open /plant/read.db to read"},
      {"/DBNAME=./sub/../read.db!/QUERY=SELECT 1!\n", "open /plant/read.db to read"},
      {"/DBNAME=read.db!/QUERY=DELETE FROM t!\n", nullptr},
      {"/DBNAME=write.db!/QUERY=DELETE FROM t!\n", "open /plant/write.db"},
      {"/DBNAME=other.db!/QUERY=SELECT 1!\n", nullptr},
  };
  for (const auto& c : cases) {
    plant.databases.asked.clear();
    plant.Tick(kCh, c.line);
    EXPECT_EQ(plant.databases.asked.front(), c.opened != nullptr ? c.opened : "abandon") << c.line;
  }
  EXPECT_THAT(plant.LogText(LogType::Error),
              HasSubstr("3051  Permission denied: channel 2 may not write /plant/read.db"));
  const auto isRefused = [&](const std::string& database) {
    plant.databases.asked.clear();
    plant.Tick(kCh, "/DBNAME=" + database + "!/QUERY=SELECT 1!\n");
    return plant.databases.asked.front() == "abandon";
  };
  for (const char* damage : {"33,x,read\n", "2,x\n", "2,x,all\n", "2,\"\",read\n", "2,x,read,more\n"}) {
    file = std::string(damage) + "2,good.db,read\n";
    EXPECT_THROW(plant.engine.configuration.ReadDatabaseRights(), RunTimeError) << damage;
    EXPECT_TRUE(isRefused("x")) << damage;
    EXPECT_FALSE(isRefused("good.db")) << damage;
  }
  file.clear();
  plant.engine.configuration.ReadDatabaseRights();
  EXPECT_TRUE(isRefused("x")) << "an empty file allows nothing";
  plant.files.content.erase("/plant/Tarvex-Database.Cfg");
  plant.engine.configuration.ReadDatabaseRights();
  EXPECT_FALSE(isRefused("x")) << "without the file everything is allowed";
}

}  // namespace
