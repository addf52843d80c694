#include "core/startup.h"

#include <gtest/gtest.h>

#include "platform/system.h"
#include "tests/support/test_plant.h"

namespace {

TEST(StartupTest, TheOperatingSystemDecidesOnTheNumberOfChannels) {
  const std::tuple<OsVersion, std::string, int> cases[] = {{{1, 4, 10}, "98", 7},
                                                           {{1, 4, 90}, "", 7},
                                                           {{2, 4, 0}, "NT4", 31},
                                                           {{2, 5, 1}, "2000", 31},
                                                           {{3, 5, 0}, "Failed", 7}};
  for (const auto& [version, name, maxChannel] : cases) {
    TestPlant plant;
    plant.system.version = version;
    EXPECT_TRUE(Main(plant.engine, ""));
    EXPECT_EQ(plant.tables.OsName, name);
    EXPECT_EQ(plant.tables.MaxChannel, maxChannel) << name;
  }
}

TEST(StartupTest, CommandLineWordsStandAnywhereInAnyCaseJoinedToAnything) {
  struct Case {
    std::string line;
    std::string set;  // noMinimize, speech, unprotect, debug, gdi, log of the last channel
  };
  const Case cases[] = {
      {"", "----g-"},        {"nominimize", "n---g-"}, {"xSpeechx/UNPROTECTdebug", "-sudg-"}, {"nogdi debug", "---d--"},
      {"catalog", "----gl"}, {"LO G", "----g-"}};
  for (const Case& c : cases) {
    TestPlant plant;
    Tables& t = plant.tables;
    t.ChanAuditLog[31] = True;
    Main(plant.engine, c.line);
    const std::pair<char, Boolean> words[] = {{'n', t.NoMinimize}, {'s', t.SpeechEnabled}, {'u', t.UnprotectFormats},
                                              {'d', t.DebugMode},  {'g', t.GdiEnabled},    {'l', t.ChanAuditLog[31]}};
    std::string set;
    for (const auto& [letter, value] : words) set += value == True ? letter : '-';
    EXPECT_EQ(set, c.set) << c.line;
  }
}

TEST(StartupTest, ASecondCopyAndATooNarrowDisplayAreRefusedWithALogLineAndABox) {
  for (bool second : {true, false}) {
    TestPlant plant;
    plant.system.previousInstance = second;
    plant.system.width = second ? 1024 : 799;
    EXPECT_FALSE(Main(plant.engine, ""));
    const char* line = second ? "Tried To Start Tarvex Manager While Already Running\r\n" : "Less Than 800 x 600 Mode";
    EXPECT_NE(plant.LogText(LogType::Error).find(line), std::string::npos);
    ASSERT_EQ(plant.notice.boxes.size(), 1U);
    if (!second) continue;
    EXPECT_EQ(plant.notice.boxes[0].text,
              "A Copy Of Tarvex Manager Is Already Running.\r\n\r\nPlease Switch To Copy Of Tarvex Manager Already "
              "Running...    \r\n\r\nContact Orvane For Additional Help...");
  }
}

TEST(StartupTest, EachDamageOfTheSystemFileIsToldOnceUntilTheFileIsGoodAgain) {
  TestPlant plant;
  const std::string good = "25,2,15,0,25,1,#TRUE#,#FALSE#", first = "25,x", second = "25,2,y";
  std::size_t told = 0;
  for (const auto& [content, isTold] :
       {std::pair{first, true}, {first, false}, {second, true}, {good, false}, {second, true}}) {
    plant.files.content["/plant/TarvexSysSetup.Cfg"] = content;
    if (told == 0) LoadStartupForm(plant.engine);
    LaunchMainScreen(plant.engine);
    LoadMainForm(plant.engine);
    told += isTold ? 1 : 0;
    EXPECT_EQ(plant.notice.boxes.size(), told) << content;
  }
}

}  // namespace
