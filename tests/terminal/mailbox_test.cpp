#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/test_plant.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr int kCh = 2;

/// Channel 3 serves the program of terminal 3, whose shared data the test plays.
class MailboxTest : public testing::Test {
 protected:
  MailboxTest() {
    tables.MaxChannel = 4;
    tables.ChannelsInitialised = True;
    tables.ChanProtocol[kCh] = 0;
    tables.ChanConnectUsing[kCh] = ConnectUsing::ArcNet;
    tables.ChanDeviceID[kCh] = " 3 ";
    tables.ChanEnabled[kCh] = tables.ChanAuditLog[kCh] = True;
    tables.ChanTimeout[kCh] = 2000;
    for (const char* name : {"lit01", "lit02", "ptp01", "ptp02", "ptp03", "ptp04", "ptp05"}) Field(name) = "";
    terminals.registered = true;
    tables.TerminalLinkUp = True;
    tables.ReinitChannel = kCh;
    plant.Tick();
    plant.system.dateTime = "2026-11-16 13:04:05";
  }
  std::string& Field(const std::string& name) { return terminals.field["/v3/" + name]; }
  /// What the mailbox holds one tick after the terminal has written `text`.
  std::string Ask(const std::string& text) {
    Field("lit01") = text;
    plant.Tick();
    return Field("lit01");
  }
  std::string AskSql(const std::string& statement, const std::string& database = "x.mdb") {
    Field("lit02") = database;
    Field("ptp01") = statement;
    return Ask("SQL3:1");
  }
  void Records(std::int64_t count, std::size_t fields, std::vector<std::string> values) {
    plant.databases.onQuery = [=](const std::string&) { return Recordset{count, fields, values}; };
  }
  const std::string& Caption() { return tables.ChanStatusText[kCh]; }
  static std::string Slot(std::string text) {
    text.resize(75, ' ');
    return text;
  }

  TestPlant plant;
  Tables& tables = plant.tables;
  MemoryTerminals& terminals = plant.terminals;
};

TEST_F(MailboxTest, SmallServicesAnswerAndOtherTextsAreLeftAlone) {
  const struct {
    const char* asked;
    const char* left;
    const char* caption;
  } cases[] = {
      {"DLOT:", "PLOT:632013", "Ready..."},
      {"DADD:7", "PADD:63201305/22/30", "Ready..."},
      {"DADD:", "PADD:63201305/22/30", "Ready..."},
      {"DONE:", "", "Ready..."},
      {"FMT1:4", "FMT1:4", "FMT1:4"},
      {"ack1:", "ack1:", "ack1:"},
      {"^ERROR", "^ERROR", "^ERROR"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Ask(c.asked), c.left);
    EXPECT_EQ(Caption(), c.caption) << c.asked;
  }
  EXPECT_EQ(tables.ChanSqlLines[kCh], 0);
  Caption();
  tables.ChanStatusText[kCh] = "as it was";
  Ask(std::string(40, 'A'));
  EXPECT_EQ(Caption(), "as it was") << "no NUL within 40 characters";
  EXPECT_EQ(Ask("TST1:").size(), 78U);
  EXPECT_THAT(terminals.writes.back(), HasSubstr("/v3/lit01 400 !123"));

  terminals.refuseWrite = [](const std::string&) -> std::int16_t { return 69; };
  for (const auto& [asked, caption] : {std::pair{"DLOT:", "VantAPI > Lot # Error"},
                                       {"DADD:7", "VantAPI > Date Add Error"},
                                       {"DONE:", "Packet Error"},
                                       {"TST1:", "Error Writing Var..."}}) {
    Ask(asked);
    EXPECT_EQ(Caption(), caption);
  }
}

TEST_F(MailboxTest, AQueryIsLoadedAndItsFirstPacketSent) {
  Records(1, 3, {"Bolt M8", std::string(80, 'x'), ""});
  terminals.writes.clear();
  Field("ptp02") = "e FROM parts ";
  Field("lit02") = " x.mdb ";
  Field("ptp01") = " SELECT nam";
  EXPECT_EQ(Ask("SQL3:2"), "****:00001:005");
  EXPECT_THAT(plant.databases.asked,
              ElementsAre("open /plant/x.mdb", "query SELECT name FROM parts", "close records", "close", "idle"));
  EXPECT_EQ(Field("ptp01"), Slot("Bolt M8") + std::string(75, 'x') + Slot("") + Slot("11/16/26") + Slot("13:04:05") +
                                std::string(25, '-'));
  EXPECT_EQ(Field("ptp03"), std::string(375, ' ') + std::string(25, '-'));
  EXPECT_EQ(terminals.writes.size(), 5U) << "three fields, and the mailbox twice";
  EXPECT_EQ(Caption(), "Ready...");
  EXPECT_EQ(tables.ChanDbName[kCh] + tables.ChanDbQuery[kCh], "");
  EXPECT_EQ(Ask("ACK1:"), "!");
  EXPECT_THAT(plant.LogText(LogType::Transmitted), HasSubstr("!COUNT=1!Bolt M8!xxx"));
  EXPECT_THAT(plant.LogText(LogType::Sql), HasSubstr("Opening: x.mdb...\r\n"));
  EXPECT_THAT(plant.LogText(LogType::Sql), HasSubstr("Record Count = 1\r\n"));

  Records(0, 3, {});
  EXPECT_EQ(AskSql("SELECT a FROM t"), "@");
  EXPECT_EQ(tables.ChanDbRows[kCh][0], "NOT FOUND");
  EXPECT_EQ(Ask("ACK1:"), "@");
}

TEST_F(MailboxTest, FurtherPacketsFollowAcknowledgementsUntilTheDataEnds) {
  std::vector<std::string> values;
  for (int element = 0; element < 14; ++element) values.push_back(std::to_string(element));
  Records(14, 1, values);
  EXPECT_EQ(AskSql("SELECT n FROM t"), "****:00014:016");
  plant.system.midnightSeconds = 50000;
  EXPECT_EQ(Ask("ACK1:"), "****:00000:016");
  EXPECT_TRUE(Field("ptp01").starts_with(Slot("13:04:05"))) << "the sixteenth element";
  EXPECT_EQ(tables.ChanPacketIndex[kCh], 15);
  // The terminal is silent: its time runs from the sending of this packet.
  plant.Tick();
  EXPECT_EQ(Caption(), "Packet 0 Sent...");
  plant.system.midnightSeconds += 2.5;
  plant.Tick();
  EXPECT_EQ(Caption(), "Packet 0  Timeout...");
  EXPECT_EQ(tables.ChanPacketIndex[kCh], 30);
  EXPECT_EQ(Field("lit01"), "****:00000:016") << "nothing is sent again";
  EXPECT_EQ(Ask("ACK1:"), "!");
  EXPECT_EQ(Ask("DONE:"), "");
  EXPECT_EQ(tables.ChanPacketIndex[kCh], 0);
}

TEST_F(MailboxTest, AResultThatOutgrowsTheTableEndsTheTickAndClosesTheTransferLater) {
  Records(100, 4, std::vector<std::string>(200, "v"));
  EXPECT_EQ(AskSql("SELECT * FROM t"), "SQL3:1") << "date and time do not fit";
  EXPECT_THAT(plant.LogText(LogType::Error), HasSubstr("Channel: 3  Critical Error: 9"));
  EXPECT_EQ(plant.databases.asked.back(), "abandon") << "nothing stays open";

  Records(198, 1, std::vector<std::string>(198, "v"));
  EXPECT_EQ(AskSql("SELECT n FROM t"), "****:00198:200");
  for (int packet = 1; packet < 13; ++packet) EXPECT_EQ(Ask("ACK1:"), "****:00000:200");
  EXPECT_EQ(Ask("ACK1:"), "ACK1:") << "the packet at 195 needs element 201";
  plant.Tick();
  EXPECT_EQ(Field("lit01"), "!");
}

TEST_F(MailboxTest, AnActionIsExecutedAndARefusedStatementIsAnswered) {
  EXPECT_EQ(AskSql("INSERT INTO t VALUES (1)"), "!");
  EXPECT_THAT(plant.databases.asked,
              ElementsAre("open /plant/x.mdb", "execute INSERT INTO t VALUES (1)", "close", "idle"));
  plant.databases.asked.clear();
  EXPECT_EQ(AskSql("SELECT INTO t IN y.mdb WHERE a"), "!");
  EXPECT_EQ(plant.databases.asked.front(), "create /plant/IN y.mdb ") << "the clause is used as it stands";

  plant.databases.onOperation = [](const std::string& operation) {
    if (operation.starts_with("query")) throw RunTimeError(3078, "no such table: t");
  };
  EXPECT_EQ(AskSql("SELECT a FROM t"), "^ERROR");
  EXPECT_EQ(Caption(), "Ready...");
  EXPECT_EQ(tables.ChanDbName[kCh], "x.mdb") << "the tail does not run";
  EXPECT_THAT(plant.LogText(LogType::Error), HasSubstr("Channel: 3  JET Database Error: 3078  no such table: t"));
  EXPECT_EQ(AskSql("SELECT a FROM t WHERE b IN (1)"), "SQL3:1");
  EXPECT_THAT(plant.LogText(LogType::Error), HasSubstr("Channel: 3  Critical Error: 5"));
  tables.ChanDbDriver[kCh] = 2;
  plant.databases.asked.clear();
  EXPECT_EQ(AskSql("SELECT a FROM t"), "SQL3:1") << "no driver but the first executes";
  EXPECT_THAT(plant.databases.asked, ElementsAre("idle"));
}

TEST_F(MailboxTest, AStatementIsExecutedOnceAlsoIfNothingCanBeLogged) {
  for (const char* log : {"SQLLog-Tarvex.txt", "XmitLog-Tarvex.txt"}) {
    plant.files.broken["/plant/" + std::string(log)] = ErrorNumber::DiskFull;
  }
  EXPECT_EQ(AskSql("INSERT INTO t VALUES (1)"), "!");
  EXPECT_EQ(std::ranges::count(plant.databases.asked, "execute INSERT INTO t VALUES (1)"), 1);
}

TEST_F(MailboxTest, WhatIsNotAWholeCommandGetsNoReply) {
  for (const char* text : {"SQL3:0", "SQL3:", "SQL3:-1"}) EXPECT_EQ(Ask(text), text);
  Field("lit02") = "";
  EXPECT_EQ(Ask("SQL3:1"), "SQL3:1");
  EXPECT_EQ(AskSql("SELECT 1", "x.mdb"), "@") << "the sixth path is empty and passed over";
  Field("ptp01") = "SELECT 2";
  EXPECT_EQ(Ask("SQL3:6"), "@");
  EXPECT_EQ(Ask("SQL3:7"), "SQL3:7");
  EXPECT_THAT(plant.LogText(LogType::Error), HasSubstr("Critical Error: 9"));
}

TEST_F(MailboxTest, AStatementThatTakesLongIsLookedAfterByLaterVisits) {
  Records(1, 1, {"v"});
  plant.databases.slow = true;
  EXPECT_EQ(AskSql("SELECT a FROM t"), "SQL3:1");
  EXPECT_EQ(Caption(), "Opening DB...");
  const std::int64_t visits = tables.ScanTick;
  for (int tick = 0; tick < 3; ++tick) plant.Tick();
  EXPECT_EQ(tables.ScanTick, visits + 3) << "the scan goes on";
  EXPECT_THAT(plant.databases.asked, ElementsAre("open /plant/x.mdb"));
  plant.databases.slow = false;
  plant.Tick();
  EXPECT_EQ(Field("lit01"), "****:00001:003");

  plant.databases.slow = true;
  AskSql("SELECT a FROM t");
  tables.ChanConnected[kCh] = False;
  plant.Tick();
  EXPECT_EQ(plant.databases.asked.back(), "abandon") << "a channel that is let go of leaves nothing running";
}

TEST_F(MailboxTest, ATerminalThatDoesNotAnswerIsReadAgainByTheNextTick) {
  tables.SpeechEnabled = True;
  terminals.refusal = 10060;
  plant.Tick();
  EXPECT_EQ(Caption(), "Network ID Error...");
  EXPECT_EQ(tables.ChanIndicator[Item::Error][kCh], True);
  EXPECT_EQ(tables.ChanEnabled[kCh], True);
  EXPECT_EQ(plant.notice.spoken.size(), 1U);
  terminals.refusal = VantStatusCode::Success;
  EXPECT_EQ(Ask("DLOT:"), "PLOT:632013");
  EXPECT_EQ(tables.ChanIndicator[Item::Error][kCh], False);
}

}  // namespace
