#include "core/startup.h"

#include <gtest/gtest.h>

#include "platform/system.h"
#include "tests/support/test_plant.h"

namespace {

/// Forms that write down what is asked of them and run their load and activation events as a window does.
class JournalStartupForm : public HeadlessStartupForm {
 public:
  explicit JournalStartupForm(std::string& journal) : journal_(journal) {}
  void SetRevision(std::string_view text) override { journal_ += std::string(text) + "; "; }
  void ShowLogo(int width) override { journal_ += "logo " + std::to_string(width) + "; "; }
  void Show() override { journal_ += "show; "; }
  void Hide() override { journal_ += "hide; "; }
  void ShowMenu(int) override { journal_ += "menu; "; }
  void EnableContinue(bool enabled) override { journal_ += enabled ? "continue; " : "no continue; "; }

 private:
  std::string& journal_;
};

class JournalMainForm : public HeadlessMainForm {
 public:
  explicit JournalMainForm(std::string& journal) : journal_(journal) {}
  Engine* engine = nullptr;
  void Show() override {
    journal_ += "main; ";
    if (!loaded_) LoadMainForm(*engine);
    loaded_ = true;
    ActivateMainForm(*engine);
  }
  void EnablePutInTray(bool enabled) override { journal_ += enabled ? "tray; " : "no tray; "; }
  void ShowDebugLabel(bool visible) override { journal_ += visible ? "debug; " : "no debug; "; }

 private:
  std::string& journal_;
  bool loaded_ = false;
};

struct StartupPlant : TestPlant {
  std::string journal;
  JournalStartupForm startup{journal};
  JournalMainForm main{journal};
  Engine started = EngineWith({.startupForm = &startup, .mainForm = &main});
  StartupPlant() { main.engine = &started; }
};

TEST(StartupTest, TheOperatingSystemDecidesOnTheNumberOfChannels) {
  struct Case {
    OsVersion version;
    std::string name;
    int maxChannel;
  };
  const Case cases[] = {{{1, 4, 0}, "95", 7},   {{1, 4, 10}, "98", 7},   {{1, 4, 90}, "", 7}, {{2, 3, 51}, "NT3.51", 7},
                        {{2, 4, 0}, "NT4", 31}, {{2, 5, 1}, "2000", 31}, {{2, 6, 0}, "", 7},  {{3, 5, 0}, "Failed", 7}};
  for (const Case& c : cases) {
    TestPlant plant;
    plant.system.version = c.version;
    EXPECT_TRUE(Main(plant.engine, ""));
    EXPECT_EQ(plant.tables.OsName, c.name);
    EXPECT_EQ(plant.tables.MaxChannel, c.maxChannel) << c.name;
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

TEST(StartupTest, ASecondCopyIsRefusedWithTheLogLineAndTheBox) {
  TestPlant plant;
  plant.system.previousInstance = true;
  EXPECT_FALSE(Main(plant.engine, ""));
  EXPECT_EQ(plant.LogText(LogType::Error),
            "2026-01-02 03:04:05 @ Tried To Start Tarvex Manager While Already Running\r\n");
  ASSERT_EQ(plant.notice.boxes.size(), 1U);
  EXPECT_EQ(plant.notice.boxes[0].caption, " Tarvex Manager Startup Problem...");
  EXPECT_EQ(plant.notice.boxes[0].text,
            "A Copy Of Tarvex Manager Is Already Running.\r\n\r\nPlease Switch To Copy Of Tarvex Manager Already "
            "Running...    \r\n\r\nContact Orvane For Additional Help...");
}

TEST(StartupTest, OnlyTheWidthOfTheDisplayIsTested) {
  struct Case {
    int width, height;
    bool starts;
    int mode;
  };
  const Case cases[] = {
      {799, 600, false, 0}, {800, 480, true, 800600}, {1024, 768, true, 1024768}, {1280, 1024, true, 0}};
  for (const Case& c : cases) {
    TestPlant plant;
    plant.system.width = c.width;
    plant.system.height = c.height;
    EXPECT_EQ(Main(plant.engine, ""), c.starts) << c.width;
    EXPECT_EQ(plant.tables.ScreenMode, c.mode);
    EXPECT_EQ(plant.notice.boxes.size(), c.starts ? 0U : 1U);
    EXPECT_EQ(plant.LogText(LogType::Error).find("Less Than 800 x 600 Mode") != std::string::npos, !c.starts);
  }
}

TEST(StartupTest, FixedTablesHoldEverySettingInItsOrder) {
  TestPlant plant;
  Main(plant.engine, "");
  const Tables& t = plant.tables;
  EXPECT_EQ(t.PortSettingsTable[0], "1200,N,7,1");
  EXPECT_EQ(t.PortSettingsTable[33], "9600,N,8,1");
  EXPECT_EQ(t.PortSettingsTable[53], "38400,E,8,1");
  EXPECT_EQ(t.UnitsTable[12], "Custom Units2");
  EXPECT_EQ(t.DecimalMaskTable[6], "0.00000");
  EXPECT_EQ(t.ProtoFileName[7], "\\Tarvex-Std-OV4420Fmt.Cfg");
  EXPECT_EQ(t.ProtoFileName[41], "\\Tarvex-Std-CustFmt32.Cfg");
  EXPECT_EQ(t.ProtoFileName[42], "");
}

TEST(StartupTest, AnUnattendedStartNeedsNoClickAndRunsTheInterfaceTwice) {
  StartupPlant plant;
  plant.tables.ChannelsInitialised = False;
  ASSERT_TRUE(Main(plant.started, ""));
  LoadStartupForm(plant.started);
  EXPECT_EQ(plant.journal, RevisionText() + "; logo 1024; show; menu; no continue; hide; main; no debug; no debug; ");
  EXPECT_TRUE(plant.events.timer1.enabled);
  EXPECT_EQ(plant.events.timer1.interval, 25);
  EXPECT_EQ(plant.events.txTimer.interval, 15);
  const std::string line = "2026-01-02 03:04:05 @ Tarvex Manager Initialized\r\n";
  EXPECT_EQ(plant.LogText(LogType::Activity), line + line);
}

TEST(StartupTest, WithoutStartMinimizedTheFormWaitsAndInDebugModeTheTrayIsNotUsed) {
  StartupPlant plant;
  ASSERT_TRUE(Main(plant.started, "debug"));
  plant.tables.StartMinimized = False;
  plant.files.content["/plant/TarvexSysSetup.Cfg"] = "25,2,15,0,25,1,#TRUE#,#FALSE#\r\n";
  LoadStartupForm(plant.started);
  EXPECT_EQ(plant.journal, RevisionText() + "; logo 1024; show; menu; ");
  EXPECT_FALSE(plant.events.timer1.enabled);
  LaunchMainScreen(plant.started);
  EXPECT_NE(plant.journal.find("hide; main; no tray; debug; "), std::string::npos);
  EXPECT_NE(plant.LogText(LogType::Activity).find("Initialized In Debug Mode"), std::string::npos);
}

}  // namespace
