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

/// The program's folder in memory; a write to it is a fault of the replay.
class ReadOnlyFiles : public MemoryFiles {
 public:
  std::string OpenAndRead(const std::string& path) override { return Refuse(path); }
  void Replace(const std::string& path, std::string_view) override { Refuse(path); }
  void Append(const std::string& path, std::string_view) override { Refuse(path); }

 private:
  std::string Refuse(const std::string& path) {
    ADD_FAILURE() << path << " is written";
    return {};
  }
};

struct Folder {
  ReadOnlyFiles files;
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
  for (int startTick : {0, 1, 10'000'000}) {
    Replay replay(folder.files, {.home = "/plant", .startTick = startTick});
    EXPECT_THAT(replay.Warnings(), testing::ElementsAre(HasSubstr("Tarvex-Std-OVShortFmt.Cfg")));
    EXPECT_FALSE(replay.Tick(kGood).error) << "another format's fault is none of this channel";
    EXPECT_EQ(replay.Store().ScanTick, startTick == 10'000'000 ? 0 : startTick + 1);
    EXPECT_EQ(replay.Store().ChanGross[0], " 12.50");
  }
}

TEST(ReplayTest, AChannelThatItsFileKeepsClosedIsReplayedWithAWarning) {
  Folder folder;
  folder.ReplaceInChannel("#FALSE#,#TRUE#", "#FALSE#,#FALSE#");
  Replay disabled(folder.files, {.home = "/plant"});
  EXPECT_THAT(disabled.Warnings(), testing::ElementsAre(HasSubstr("is disabled in its file")));
  disabled.Tick(kGood);
  EXPECT_EQ(disabled.Store().ChanStatusText[0], "Online...");

  folder.Channel().erase();
  Replay missing(folder.files, {.home = "/plant"});
  missing.Tick(kGood);
  EXPECT_EQ(missing.Store().ChanDeviceDesc[0], "SCALE 1");
  EXPECT_EQ(missing.Store().ChanGross[0], " 12.50");
}

TEST(ReplayTest, AFaultThatKeepsTheChannelClosedStandsInTheFirstLineAndNamesTheFileThatWasRead) {
  Folder folder;
  folder.files.content["/mine.Cfg"] = "0,2,13\r\n5,x";
  Replay replay(folder.files, {.home = "/plant", .format = "/mine.Cfg"});
  EXPECT_THAT(replay.Warnings(), testing::ElementsAre(HasSubstr("/mine.Cfg")));
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

TEST(ReplayTest, TextsThatAreNoUtf8AreLatin1) {
  EXPECT_EQ(ToUtf8("Gr\xC3\xB6\xC3\x9F"
                   "e"),
            "Gr\xC3\xB6\xC3\x9F"
            "e");
  EXPECT_EQ(ToUtf8("Gr\xF6\xDF"
                   "e"),
            "Gr\xC3\xB6\xC3\x9F"
            "e");
}

TEST(ReplayTest, TheTableFitsAHundredColumnsAndCountsSilentTicks) {
  Folder folder;
  folder.ReplaceInChannel("SCALE 1", "SCALE \xB2");
  Replay replay(folder.files, {.home = "/plant"});
  std::ostringstream out;
  TablePrinter table(out);
  for (const std::string& bytes : {std::string("\xFF\x01\x02\x03"), std::string(kGood), std::string(), std::string(),
                                   std::string(40, '\x1F') + "\r"}) {
    table.Print(replay, replay.Tick(bytes));
  }
  table.Finish();
  EXPECT_THAT(out.str(), HasSubstr("... \"<FF><SOH><STX><ETX>\""));
  EXPECT_THAT(out.str(), HasSubstr("(2 silent ticks without a change)\n"));
  EXPECT_THAT(out.str(), HasSubstr(" INVALIDATE\n"));
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
  const std::vector<std::string> refused[] = {{"--number", "33"},  {"--number", "0"}, {"--number", "1x"},
                                              {"--start-tick=-1"}, {"--home"},        {"--format="},
                                              {"--jsn"},           {"one", "two"},    {"--json=yes"}};
  for (const std::vector<std::string>& words : refused) {
    EXPECT_THROW(ReadReplayOptions(words), RunTimeError) << words[0];
  }
}

}  // namespace
