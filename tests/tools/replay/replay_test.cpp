#include "tools/replay/replay.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <sstream>

#include "platform/posix/posix_files.h"
#include "tests/support/test_plant.h"
#include "tests/tools/replay/recorded_capture.h"
#include "tools/replay/json_lines.h"
#include "tools/replay/options.h"
#include "tools/replay/table_printer.h"

namespace {

using testing::HasSubstr;

constexpr char kGood[] =
    "\x02\x2C\x30\x20"
    "001250000000\r";

/// The program's folder in memory.
struct Folder {
  MemoryFiles files;
  Folder() {
    PosixFiles disk;
    const std::string data = TEST_DATA_FOLDER;
    files.content["/plant/Tarvex-Std-OVStdFmt.Cfg"] = disk.Read(data + "/../../formats/Tarvex-Std-OVStdFmt.Cfg");
    files.content["/plant/Tarvex-SCALE1.Cfg"] = disk.Read(data + "/standard.channel.Cfg");
  }
  std::string& Channel() { return files.content["/plant/Tarvex-SCALE1.Cfg"]; }
  void ReplaceInChannel(const std::string& what, const std::string& by) {
    Channel().replace(Channel().find(what), what.size(), by);
  }
};

TEST(ReplayTest, TheCaptureBeginsBehindTheStartTickWhateverTheInitialisationTook) {
  Folder folder;
  folder.files.content["/plant/Tarvex-Std-OVShortFmt.Cfg"] = "damaged";
  folder.files.content["/plant/Tarvex-SCALE2.Cfg"] = "damaged too, but not read";
  const auto before = folder.files.content;
  for (int startTick : {0, 1, 10'000'000}) {
    Replay replay(folder.files, {.home = "/plant", .startTick = startTick});
    EXPECT_THAT(replay.Warnings(), testing::ElementsAre(HasSubstr("Tarvex-Std-OVShortFmt.Cfg")));
    EXPECT_FALSE(replay.Tick(kGood).error) << "another format's fault is none of this channel";
    EXPECT_EQ(replay.Store().ScanTick, startTick == 10'000'000 ? 0 : startTick + 1);
    EXPECT_EQ(replay.Store().ChanGross[0], " 12.50");
  }
  EXPECT_EQ(folder.files.content, before) << "a replay writes nothing";
}

TEST(ReplayTest, AFaultThatKeepsTheChannelClosedStandsInTheFirstLineAndNamesTheFileThatWasRead) {
  Folder folder;
  folder.files.content["/mine.Cfg"] = "0,2,13\r\n5,x";
  folder.ReplaceInChannel("#FALSE#,#TRUE#", "#FALSE#,#FALSE#");  // disabled, which is not what keeps it closed
  Replay replay(folder.files, {.home = "/plant", .format = "/mine.Cfg"});
  EXPECT_THAT(replay.Warnings(), testing::Contains(HasSubstr("/mine.Cfg")));
  const TickEvents first = replay.Tick(kGood);
  ASSERT_TRUE(first.error);
  EXPECT_EQ(first.error->Number(), ErrorNumber::TypeMismatch);
  EXPECT_EQ(replay.Store().ChanStatusText[0], "Initialization Error...");
  EXPECT_EQ(first.outcome, TickEvents::Outcome::Silent);
  EXPECT_FALSE(replay.Tick(kGood).error);
}

TEST(ReplayTest, TheOperatorIsWarnedOfAFormatThatDecodesNothing) {
  const std::pair<std::string, std::string> cases[] = {{"0", "is no scale protocol"},
                                                       {"10", "ProtoStatusCount is -1"},
                                                       {"12", "has no format file /plant/Tarvex-Std-CustFmt3.Cfg"},
                                                       {"39", "is not read at the start"}};
  for (const auto& [protocol, warning] : cases) {
    Folder folder;
    folder.Channel().replace(0, 1, protocol);
    folder.files.content["/plant/Tarvex-Std-CustFmt1.Cfg"] =
        PosixFiles().Read(std::string(TEST_DATA_FOLDER) + "/line-no-end.format.Cfg");
    EXPECT_THAT(Replay(folder.files, {.home = "/plant"}).Warnings(), testing::ElementsAre(HasSubstr(warning)));
  }
  Folder folder;
  EXPECT_THROW(Replay(folder.files, {.home = "/plant", .number = 33}), RunTimeError);
}

TEST(ReplayTest, TheTableFitsAHundredColumnsAndCountsSilentTicks) {
  Folder folder;
  folder.ReplaceInChannel("#TRUE#,#FALSE#", "#TRUE#,#TRUE#");  // bidirectional
  Replay replay(folder.files, {.home = "/plant"});
  std::ostringstream out;
  TablePrinter table(out);
  for (const std::string& bytes : {std::string("\xFF\x01\x02\x03"), std::string(kGood), std::string(), std::string(),
                                   std::string(40, '\x1F') + "\r"}) {
    table.Print(replay, replay.Tick(bytes));
  }
  std::istringstream action("!device CCmd=99");
  replay.Act(std::get<DeviceWrites>(*CaptureReader(action, "c").Next()));
  table.Print(replay, replay.Tick(""));
  table.Print(replay, replay.Tick(""));
  table.Finish();
  EXPECT_THAT(out.str(), HasSubstr("... \"<FF><SOH><STX><ETX>\""));
  EXPECT_THAT(out.str(), HasSubstr("(2 silent ticks without a change)\n"));
  EXPECT_THAT(out.str(), HasSubstr(" INVALIDATE\n"));
  EXPECT_THAT(out.str(), HasSubstr("to the automation client: CMDSTAT 1099\n"));
  EXPECT_THAT(out.str(), HasSubstr("(one silent tick without a change)\n"));
  std::istringstream lines(out.str());
  for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 100U) << line;
}

TEST(ReplayTest, OptionsTakeTheirValueBehindABlankOrAnEqualsSign) {
  const ReplayOptions options =
      ReadReplayOptions({"--home=/plant", "--number", "32", "--json", "--start-tick=10000000", "--channel", "c", "-"});
  EXPECT_EQ(options.setup.home, "/plant");
  EXPECT_EQ(options.setup.number, 32);
  EXPECT_EQ(options.setup.startTick, 10'000'000);
  EXPECT_TRUE(options.json);
  EXPECT_EQ(options.capture, "");
  for (const std::vector<std::string>& words : std::initializer_list<std::vector<std::string>>{
           {"--number", "33"}, {"--number", "1x"}, {"--start-tick=-1"}, {"--home"}, {"--jsn"}, {"one", "two"}}) {
    EXPECT_THROW(ReadReplayOptions(words), RunTimeError) << words[0];
  }
}

}  // namespace
