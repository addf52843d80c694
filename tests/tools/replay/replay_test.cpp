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

}  // namespace
