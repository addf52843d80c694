#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>

#include "app/daemon_forms.h"
#include "app/log_notice.h"
#include "core/shutdown.h"
#include "core/startup.h"
#include "platform/posix/descriptor.h"
#include "tests/support/test_plant.h"

using testing::ElementsAre;

namespace {

/// A pipe whose reader is the test.
class ReaderPipe {
 public:
  ReaderPipe() {
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    readEnd_ = Descriptor(ends[0]);
    writeEnd_ = Descriptor(ends[1]);
    fcntl(readEnd_.Get(), F_SETFL, O_NONBLOCK);
  }
  int WriteEnd() const { return writeEnd_.Get(); }
  std::string Read() {
    std::string text;
    char buffer[4096];
    for (ssize_t size = 0; (size = read(readEnd_.Get(), buffer, sizeof buffer)) > 0;) {
      text.append(buffer, static_cast<std::size_t>(size));
    }
    return text;
  }

 private:
  Descriptor readEnd_, writeEnd_;
};

class DaemonFormsTest : public testing::Test {
 protected:
  DaemonFormsTest() {
    startupForm.Attach(engine);
    mainForm.Attach(engine);
  }
  auto Announcements() const {
    const std::string log = plant.LogText(LogType::Activity);
    return std::count(log.begin(), log.end(), '\n');
  }

  TestPlant plant;
  DaemonStartupForm startupForm;
  DaemonMainForm mainForm;
  Engine engine{plant.tables,
                plant.system,
                plant.events,
                plant.ports,
                plant.files,
                plant.notice,
                plant.engine.log,
                plant.engine.configuration,
                plant.engine.publisher,
                plant.engine.terminal,
                startupForm,
                mainForm,
                plant.dialogs};
};

TEST_F(DaemonFormsTest, TheSystemStartsOnceWhetherItWaitsForAClickOrNot) {
  for (const bool startMinimized : {true, false}) {
    plant.files.content["/plant/TarvexSysSetup.Cfg"] =
        std::string("25,2,15,0,25,1,#TRUE#,") + (startMinimized ? "#TRUE#" : "#FALSE#") + "\r\n";
    plant.tables.FirstScanPending = True;
    plant.events.timer1.enabled = false;
    plant.files.content.erase("/plant/" + LogFiles::FileName(LogType::Activity));
    DaemonMainForm fresh;
    mainForm = fresh;
    mainForm.Attach(engine);
    LoadStartupForm(engine);
    EXPECT_TRUE(plant.events.timer1.enabled) << startMinimized;
    EXPECT_EQ(Announcements(), 2) << "once from the load, once from the first activation";
  }
}

TEST_F(DaemonFormsTest, AStoppedSystemIsActivatedAgainWithoutLoadingTheFormTwice) {
  LaunchMainScreen(engine);
  EXPECT_EQ(Announcements(), 2);
  CloseTXMWindow(engine);
  EXPECT_FALSE(plant.events.timer1.enabled);
  LaunchMainScreen(engine);
  EXPECT_EQ(Announcements(), 3);
  EXPECT_TRUE(plant.events.timer1.enabled);
}

TEST_F(DaemonFormsTest, WithoutATrayTheWayThereChangesNothing) {
  LaunchMainScreen(engine);
  mainForm.PutInTray();
  EXPECT_EQ(plant.tables.Minimized, False);
}

TEST(LineOutputTest, AReaderThatStopsReadingHoldsNobodyUpAndIsToldWhatItMissed) {
  ReaderPipe pipe;
  LineOutput output(pipe.WriteEnd());
  const std::string line(999, 'x');
  for (int i = 0; i < 1000; ++i) output.Write(line + "\n");  // far beyond what a pipe holds
  const std::string first = pipe.Read();
  EXPECT_EQ(first.size() % 1000, 0U) << "no line may be cut";
  output.Write("now\n");
  const std::size_t missed = 1000 - first.size() / 1000;
  EXPECT_GT(missed, 0U);
  EXPECT_EQ(pipe.Read(), "(" + std::to_string(missed) + " outputs were left out, nobody read them)\nnow\n");
}

TEST(LogNoticeTest, AMessageBoxIsOneLineWithDateAndTime) {
  ReaderPipe pipe;
  FakeSystem system;
  LogNotice notice(system, pipe.WriteEnd());
  notice.MessageBox(" Tarvex Manager Startup Problem...", "First.\r\n\r\nSecond...    \r\n");
  notice.Speak("Attention!,  A sentence.");
  EXPECT_EQ(pipe.Read(),
            "2026-01-02 03:04:05  Tarvex Manager Startup Problem...: First. Second...\n"
            "2026-01-02 03:04:05  Spoken: Attention!, A sentence.\n");
}

TEST(LogNoticeTest, WhileAScreenStandsMessagesGoThereAndAreWrittenWhenItIsGone) {
  ReaderPipe pipe;
  FakeSystem system;
  LogNotice notice(system, pipe.WriteEnd());
  std::vector<std::string> shown;
  notice.ScreenStands([&](std::string_view text) { shown.emplace_back(text); });
  for (int i = 1; i <= 250; ++i) notice.Write("message " + std::to_string(i));
  EXPECT_EQ(shown.size(), 250U);
  EXPECT_EQ(pipe.Read(), "");
  notice.ScreenGone();
  const std::string written = pipe.Read();
  EXPECT_TRUE(written.starts_with("(50 older messages)\n2026-01-02 03:04:05  message 51\n")) << written.substr(0, 80);
  EXPECT_TRUE(written.ends_with("message 250\n"));
}

TEST(LogNoticeTest, SentencesGoToTheVoiceWhereThereIsOne) {
  ReaderPipe pipe;
  FakeSystem system;
  LogNotice notice(system, pipe.WriteEnd());
  std::vector<std::string> spoken;
  notice.SpeakWith([&](std::string_view sentence) { spoken.emplace_back(sentence); });
  notice.Speak("Attention!");
  EXPECT_THAT(spoken, ElementsAre("Attention!"));
  EXPECT_EQ(pipe.Read(), "");
}

}  // namespace
