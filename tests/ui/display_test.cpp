#include <gmock/gmock.h>

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include "tests/ui/virtual_display.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr int kLimitMs = 20'000;

/// The desktop program as a process of its own, with a display that can be taken away.
class DisplayTest : public testing::Test {
 protected:
  ~DisplayTest() override {
    for (QProcess* process : {&program, &server}) {
      process->kill();
      process->waitForFinished();
    }
  }

  void StartProgram(const QString& display) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("DISPLAY", display);
    environment.insert("TARVEX_HOME", folder.path());
    environment.remove("WAYLAND_DISPLAY");
    environment.remove("QT_QPA_PLATFORM");
    program.setProcessEnvironment(environment);
    program.start(TARVEX, {"NOMINIMIZE"});
  }
  std::string Log(const QString& name) const {
    QFile file(folder.filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
  }
  void WaitForLog(const QString& name, const char* text) {
    for (int wait = 0; wait < 200 && Log(name).find(text) == std::string::npos; ++wait) program.waitForFinished(100);
  }

  QTemporaryDir folder;
  QProcess server, program;
};

TEST_F(DisplayTest, ABoxHoldsUpNeitherTheStartNorTheEndByASignal) {
  QFile settings(folder.filePath("TarvexSysSetup.Cfg"));
  ASSERT_TRUE(settings.open(QIODevice::WriteOnly));
  settings.write("damaged");
  settings.close();
  StartProgram(StartVirtualDisplay(server));
  WaitForLog("ErrorLog-Tarvex.txt", "TarvexSysSetup.Cfg");
  WaitForLog("ActiveLog-Tarvex.txt", "Initializing Devices");
  program.terminate();
  ASSERT_TRUE(program.waitForFinished(kLimitMs));
  EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
  EXPECT_EQ(program.exitCode(), 0);
  EXPECT_THAT(Log("ActiveLog-Tarvex.txt"), HasSubstr("Tarvex Manager Terminated"));
}

TEST_F(DisplayTest, TheLossOfTheDisplayIsLoggedAndEndsTheProgramInOrder) {
  StartProgram(StartVirtualDisplay(server));
  WaitForLog("ActiveLog-Tarvex.txt", "Initializing Devices");
  server.kill();
  ASSERT_TRUE(program.waitForFinished(kLimitMs));
  EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
  EXPECT_EQ(program.exitCode(), 1);
  EXPECT_THAT(Log("ErrorLog-Tarvex.txt"), HasSubstr("Display Lost, Tarvex Manager Ends"));
  EXPECT_THAT(Log("ActiveLog-Tarvex.txt"), HasSubstr("Tarvex Manager Terminated"));
}

TEST_F(DisplayTest, WithoutADisplayTheProgramSaysSoInOneLine) {
  StartProgram(":7654");
  ASSERT_TRUE(program.waitForFinished(kLimitMs));
  EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
  EXPECT_EQ(program.exitCode(), 1);
  const QByteArray told = program.readAllStandardError();
  EXPECT_THAT(told.toStdString(), StartsWith("tarvex: There is no display"));
  EXPECT_EQ(told.count('\n'), 1);
}

}  // namespace
