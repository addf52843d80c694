#include "tools/replay/replay.h"

#include <gmock/gmock.h>

#include "platform/posix/posix_files.h"
#include "tests/support/test_plant.h"

namespace {

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
};

TEST(ReplayTest, TheCaptureBeginsBehindTheStartTickWhateverTheInitialisationTook) {
  Folder folder;
  folder.files.content["/plant/Tarvex-Std-OVShortFmt.Cfg"] = "damaged";
  folder.files.content["/plant/Tarvex-SCALE2.Cfg"] = "damaged too, but not read";
  const auto before = folder.files.content;
  for (int startTick : {0, 1, 10'000'000}) {
    Replay replay(folder.files, {.home = "/plant", .startTick = startTick});
    EXPECT_THAT(replay.Warnings(), testing::ElementsAre(testing::HasSubstr("Tarvex-Std-OVShortFmt.Cfg")));
    EXPECT_FALSE(replay.Tick(kGood).error) << "another format's fault is none of this channel";
    EXPECT_EQ(replay.Store().ScanTick, startTick == 10'000'000 ? 0 : startTick + 1);
    EXPECT_EQ(replay.Store().ChanGross[0], " 12.50");
  }
  EXPECT_EQ(folder.files.content, before) << "a replay writes nothing";
}

TEST(ReplayTest, WarnsOfADeviceTextThatSendsItsLastTilde) {
  Folder folder;
  std::string& format = folder.files.content["/plant/Tarvex-Std-OVStdFmt.Cfg"];
  const auto put = [&format](const std::string& old, const std::string& text) {
    ASSERT_NE(format.find(old), std::string::npos);
    format.replace(format.find(old), old.size(), text);
  };
  put("\"T\",\"Tare\",\"3\"", "\"T~~~~\",\"Tare\",\"3\"");
  put("\"C\",", "\"C~\",");                                             // one "~" is a field
  put("\"\",\"\",\"\",#FALSE#", "\"D~~\",\"Disabled\",\"6\",#FALSE#");  // never sent
  Replay replay(folder.files, {.home = "/plant"});
  EXPECT_THAT(replay.Warnings(),
              testing::ElementsAre(testing::AllOf(testing::HasSubstr("command 3"), testing::HasSubstr("\"T~~~~\""),
                                                  testing::HasSubstr("\"T2.5~\""))));
}

TEST(ReplayTest, TheFaultOfTheChannelsOwnFormatKeepsItClosedAndIsTheErrorOfTheFirstTick) {
  Folder folder;
  const std::string good = folder.files.content["/plant/Tarvex-Std-OVStdFmt.Cfg"];
  const std::size_t end = good.find("\r\n\"\",\"\",\"\",\"\",") + 2;
  for (const auto& [content, why] : {std::pair{good.substr(0, end - 9), "line "}, {good.substr(0, end), "not ended"}}) {
    folder.files.content["/mine.Cfg"] = content;
    Replay replay(folder.files, {.home = "/plant", .format = "/mine.Cfg"});
    const auto told = testing::AllOf(testing::HasSubstr("/mine.Cfg"), testing::HasSubstr(why));
    EXPECT_THAT(replay.Warnings(), testing::ElementsAre(told));
    const auto error = replay.Tick(kGood).error;
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Number(), ErrorNumber::InputPastEnd);
    EXPECT_THAT(error->Description(), told);
    EXPECT_EQ(replay.Store().ChanGross[0], "");
    EXPECT_FALSE(replay.Tick(kGood).error) << "it is told once";
  }
}

}  // namespace
