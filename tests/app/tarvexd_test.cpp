#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>

#include "tests/app/running_program.h"
#include "tests/platform/machine.h"
#include "tests/platform/plant_floor.h"

using testing::HasSubstr;

namespace {

/// 12.50 kg gross, or another six digits, in the standard continuous format.
std::string Frame(const std::string& digits = "001250") { return "\x02\x2C\x30\x20" + digits + "000000\r"; }

std::string ChannelLine(const std::string& description, const std::string& weightLog = "") {
  const char* logged = weightLog.empty() ? "#FALSE#" : "#TRUE#";
  return "2,0,%P,33,#FALSE#,\"\",\"" + description + "\",0,\"\",\"\",\"\",\"" + weightLog + "\"," + logged +
         ",#TRUE#,#FALSE#,#FALSE#,#FALSE#,#FALSE#,#FALSE#,#FALSE#,#FALSE#,30,12,50,"
         "\"\",\"\",\"\",\"\",\"\",\"\",\"\",1,0,#FALSE#\r\n";
}

class TarvexdTest : public testing::Test {
 protected:
  TarvexdTest() {
    std::filesystem::copy(TARVEX_FORMATS, folder.Path());
    AddChannel(1, scale.Path(), "Truck scale");
  }

  /// Channel and COM port `number`.
  void AddChannel(int number, const std::string& address, const std::string& description,
                  const std::string& weightLog = "") {
    std::string line = ChannelLine(description, weightLog);
    line.replace(line.find("%P"), 2, std::to_string(number - 1));
    std::ofstream(folder / ("Tarvex-SCALE" + std::to_string(number) + ".Cfg"), std::ios::binary) << line;
    std::ofstream(folder / "Tarvex-Ports.Cfg", std::ios::app) << number << ",\"" << address << "\"\r\n";
  }
  /// Lets a scale send until `condition` holds.
  bool SendUntil(Scale& sender, const std::function<bool()>& condition) {
    return Eventually([&] {
      sender.SendSome(Frame());
      return condition();
    });
  }
  bool ShowsWeight(const RunningProgram& program, const std::string& description) {
    const std::string output = program.Output();
    const std::size_t row = output.rfind(description);
    return row != std::string::npos && output.find("12.50", row) < output.find('\n', row);
  }

  TemporaryFolder folder;
  Scale scale;
};

TEST_F(TarvexdTest, AWeightOnTheLineBecomesARowAndASignalEndsTheProgramInOrder) {
  RunningProgram program(folder.Path());
  ASSERT_TRUE(SendUntil(scale, [&] { return ShowsWeight(program, "Truck scale"); })) << program.Errors();
  program.Signal(SIGTERM);
  EXPECT_EQ(program.ExitStatus(), 0);
  EXPECT_THAT(program.Output(), HasSubstr("1 of 1 channels online, "));
  const std::string activity = FileText(folder / "ActiveLog-Tarvex.txt");
  EXPECT_THAT(activity, HasSubstr(" @ Initializing Devices...\r\n"));
  const std::size_t started = activity.find(" @ Tarvex Manager Initialized", activity.find("Initialized") + 1);
  EXPECT_NE(started, std::string::npos) << "once from the load, once from the first activation";
  EXPECT_EQ(activity.find("Initialized", started + 30), std::string::npos);
  EXPECT_TRUE(activity.ends_with(" @ Tarvex Manager Terminated\r\n")) << activity;
  EXPECT_EQ(PlantFloor(scale.Path()).OpeningFault(0), 0) << "the port must be free again";
}

TEST_F(TarvexdTest, ASecondCopyIsRefusedUntilTheFirstIsGoneHoweverItWent) {
  RunningProgram first(folder.Path());
  ASSERT_TRUE(SendUntil(scale, [&] { return ShowsWeight(first, "Truck scale"); })) << first.Errors();
  {
    RunningProgram second(folder.Path());
    EXPECT_EQ(second.ExitStatus(), 1);
    EXPECT_THAT(second.Errors(), HasSubstr("Tarvex Manager Startup Problem...: A Copy Of Tarvex Manager Is Already "
                                           "Running. Please Switch To Copy"));
  }
  first.Signal(SIGKILL);
  EXPECT_EQ(first.ExitStatus(), -1);
  RunningProgram third(folder.Path());
  EXPECT_TRUE(SendUntil(scale, [&] { return ShowsWeight(third, "Truck scale"); })) << third.Errors();
}

TEST_F(TarvexdTest, AFaultOfOneChannelIsToldAndTheOthersRun) {
  Scale otherScale;
  const Descriptor held(open(otherScale.Path().c_str(), O_RDWR | O_NOCTTY));
  ioctl(held.Get(), TIOCEXCL);
  AddChannel(2, folder.Path(), "A folder");
  AddChannel(3, folder / "nothing", "Nothing there");
  AddChannel(4, otherScale.Path(), "Held by another");
  std::ofstream(folder / "Tarvex-SCALE5.Cfg") << "2,0,notaport\r\n";
  std::ofstream(folder / "Tarvex-Ports.Cfg", std::ios::app) << "5,\"/dev/null\r\n";

  RunningProgram program(folder.Path());
  ASSERT_TRUE(SendUntil(scale, [&] { return ShowsWeight(program, "Truck scale"); })) << program.Errors();
  program.Signal(SIGINT);
  EXPECT_EQ(program.ExitStatus(), 0);

  const std::string errors = program.Errors();
  EXPECT_THAT(errors, HasSubstr("The COM: port you have selected is invalid."));
  EXPECT_THAT(errors, HasSubstr("Tarvex-SCALE5.Cfg"));
  EXPECT_THAT(errors, HasSubstr("Tarvex-Ports.Cfg"));
  const std::string log = FileText(folder / "ErrorLog-Tarvex.txt");
  EXPECT_THAT(log, HasSubstr("Channel: 2  Invalid COM: Port Selected."));
  EXPECT_THAT(log, HasSubstr("Channel: 3  Invalid COM: Port Selected."));
  EXPECT_THAT(program.Output(), HasSubstr("Initialization Error..."));
  const auto lines = static_cast<std::size_t>(std::count(errors.begin(), errors.end(), '\n'));
  EXPECT_LT(lines, 10U) << "a fault is told once, not at each tick:\n" << errors;
}

TEST_F(TarvexdTest, OnATerminalItDrawsTheWeighScreenAndGivesTheTerminalBack) {
  RunningProgram program(folder.Path(), {}, RunningProgram::Place::Terminal);
  termios before{};
  tcgetattr(program.Terminal(), &before);
  ASSERT_TRUE(SendUntil(scale, [&] { return program.Screen().find("12.50") != std::string::npos; }));
  EXPECT_THAT(program.Screen(), HasSubstr("Truck scale"));

  const char ctrlC = 3;
  ASSERT_EQ(write(program.Terminal(), &ctrlC, 1), 1);
  ASSERT_TRUE(Eventually([&] { return program.Screen().find("channels online") != std::string::npos; }));
  EXPECT_EQ(program.ExitStatus(), 0);
  const std::string leaveScreen = "\x1B[?1049l";
  EXPECT_LT(program.Screen().find(leaveScreen), program.Screen().find("channels online"));
}

TEST_F(TarvexdTest, ATerminalThatNobodyReadsDoesNotStopTheScan) {
  const std::string weightLog = folder / "weights.txt";
  Scale logged;
  AddChannel(2, logged.Path(), "Logged scale", weightLog);
  RunningProgram program(folder.Path(), {}, RunningProgram::Place::Terminal);
  ASSERT_TRUE(SendUntil(logged, [&] { return !FileText(weightLog).empty(); }));

  int redraws = 0;
  const auto redrawAndCount = [&] {
    redraws += write(program.Terminal(), "r", 1) == 1 ? 1 : 0;
    return FileText(weightLog).size() > 4'000;  // dozens of streams beside pictures far beyond the terminal's buffer
  };
  EXPECT_TRUE(SendUntil(logged, redrawAndCount)) << redraws;
  program.Signal(SIGTERM);
  EXPECT_EQ(program.ExitStatus(), 0);
}

}  // namespace
