#include "tools/sim/plant.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "tools/sim/plant_file.h"

namespace {

std::string ErrorOf(std::string_view plant) {
  try {
    ReadPlant(plant, "test.plant", "/links");
  } catch (const PlantFileError& error) {
    return error.what();
  }
  return {};
}

TEST(PlantFileTest, AFaultNamesFileLineAndKey) {
  EXPECT_EQ(ErrorOf("com = 1\n"), "test.plant:1: a key stands before the first [scale]");
  EXPECT_EQ(ErrorOf("[scale]\n\nfrom = short\n"), "test.plant:3: there is no key \"from\"");
  EXPECT_EQ(ErrorOf("[scale]\nrate = fast\n"), "test.plant:2: rate: expected a number from 0.1 to 1000");
  EXPECT_EQ(ErrorOf("[scale]\nrate = 5x\n"), "test.plant:2: rate: expected a number from 0.1 to 1000");
  EXPECT_EQ(ErrorOf("[scale]\nload = 5 at 3\n"), "test.plant:2: load: expected \"WEIGHT for SECONDS, ...\"");
  EXPECT_EQ(ErrorOf("[scale]\nname = a\n"), "test.plant:2: the scale above has no \"com\"");
  EXPECT_EQ(ErrorOf("[scale]\ncom = 1\n[scale]\ncom = 1\n"), "test.plant:4: COM1 is used twice");
  EXPECT_EQ(ErrorOf("[scale]\ncom = 1\ndecimals = 3\ncapacity = 100\n"),
            "test.plant:4: the capacity of COM1 is beyond 99.999, the largest weight that its frames can carry");
}

TEST(PlantFileTest, TheDemonstrationPlantHasTwelveDevices) {
  std::ifstream file(TARVEX_DEMO_PLANT);
  std::ostringstream text;
  text << file.rdbuf();
  const auto devices = ReadPlant(text.str(), TARVEX_DEMO_PLANT, "/links");
  ASSERT_EQ(devices.size(), 12U);
  EXPECT_EQ(devices[0].link, "/links/scale1");
  EXPECT_EQ(devices[10].form, FrameForm::Short);
  EXPECT_EQ(devices[11].tcpPort, 0);
}

/// One standard scale on a real pseudo-terminal, on a clock that the test drives.
class PlantOnTerminalTest : public testing::Test {
 protected:
  PlantOnTerminalTest() : folder_(std::filesystem::temp_directory_path() / ("tarvex-sim-" + std::to_string(getpid()))) {
    std::filesystem::create_directories(folder_);
    auto settings = PlainPlant(1, 10, folder_.string());
    settings[0].scale.load = {{500, 1000}};
    plant_ = std::make_unique<Plant>(settings, 1);
    plant_->Run(0);
    link_ = folder_ / "scale1";
    port_ = open(link_.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
  }
  ~PlantOnTerminalTest() override {
    close(port_);
    plant_.reset();
    std::filesystem::remove_all(folder_);
  }

  /// Lets the plant run for `seconds` and returns all that came over the line.
  std::string Run(double seconds) {
    std::string received;
    for (const double end = now_ + seconds; now_ < end; now_ += 0.01) {
      plant_->Run(now_);
      std::array<char, 256> buffer;
      for (int wait = 0; wait < 3; ++wait) {
        const ssize_t size = read(port_, buffer.data(), buffer.size());
        if (size > 0) received.append(buffer.data(), static_cast<std::size_t>(size));
      }
    }
    return received;
  }

  /// Runs the plant until `text` comes over the line, for at most 20 seconds of its time.
  bool Sees(const std::string& text) {
    std::string received;
    for (int round = 0; round < 200; ++round) {
      received += Run(0.1);
      if (received.find(text) != std::string::npos) return true;
    }
    return (received + Drain()).find(text) != std::string::npos;
  }

  /// What is still on its way through the pseudo-terminal.
  std::string Drain() {
    std::string received;
    pollfd port = {port_, POLLIN, 0};
    while (poll(&port, 1, 50) > 0 && (port.revents & POLLIN) != 0) {
      std::array<char, 256> buffer;
      const ssize_t size = read(port_, buffer.data(), buffer.size());
      if (size > 0) received.append(buffer.data(), static_cast<std::size_t>(size));
    }
    return received;
  }

  void Send(std::string_view command) {
    ASSERT_EQ(write(port_, command.data(), command.size()), static_cast<ssize_t>(command.size()));
  }

  std::filesystem::path folder_;
  std::filesystem::path link_;
  std::unique_ptr<Plant> plant_;
  int port_ = -1;
  double now_ = 0;
};

TEST_F(PlantOnTerminalTest, CommandsOfTheProgramActAndShowInTheNextFrames) {
  ASSERT_TRUE(Sees("005000000000\r"));
  Send("T\r");
  EXPECT_TRUE(Sees("000000005000\r"));
  Send("C\rX\rK12.5A\r");
  EXPECT_TRUE(Sees("004875000125\r"));
  Send("P\r");
  EXPECT_TRUE(
      Sees("\x28"
           "004875000125\r"))
      << "print request";
}

TEST_F(PlantOnTerminalTest, FaultsComeAndGoByHand) {
  ASSERT_TRUE(Sees("005000000000\r"));
  EXPECT_EQ(plant_->Obey("silence 1 5"), "COM1: silence 1 5\n");
  Run(0.2);
  Drain();
  EXPECT_EQ(Run(4) + Drain(), "");
  EXPECT_TRUE(Sees("005000000000\r"));

  plant_->Obey("pull 1");
  Run(0.1);
  EXPECT_FALSE(std::filesystem::is_symlink(link_));
  plant_->Obey("plug 1");
  Run(0.1);
  EXPECT_TRUE(std::filesystem::is_symlink(link_));

  EXPECT_EQ(plant_->Obey("pull 7"), "Which COM number? \"pull 7\" names no device of this plant.\n");
  EXPECT_EQ(plant_->Obey("pul 1"), "There is no word \"pul\"; try help.\n");
  EXPECT_EQ(plant_->Obey("load 1"), "Which weight? Write: load COM WEIGHT\n");
}

TEST_F(PlantOnTerminalTest, SplitAndGarbledFramesAreStillFollowedByGoodOnes) {
  plant_->Obey("split 1 3");
  EXPECT_TRUE(Sees("005000000000\r"));
  plant_->Obey("garbage 1 2");
  plant_->Obey("cut 1 2");
  Run(2.5);
  EXPECT_TRUE(Sees("005000000000\r"));
}

}  // namespace
