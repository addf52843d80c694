#include "tools/sim/plant.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/platform/plant_floor.h"
#include "tools/sim/plant_file.h"
#include "tools/sim/words.h"

using namespace sim;

namespace {

namespace fs = std::filesystem;

const std::string kWeight = "005000000000\r";

/// Real lines with a scale of 500.0 on each, and the system's own ports at their other end.
class PlantTest : public testing::Test {
 protected:
  explicit PlantTest(bool onTcp = false) {
    PlantSettings settings = PlainPlant(2, 10);
    for (DeviceSettings& device : settings.devices) {
      device.scale.load = {{500, 1000}};
      device.onTcp = onTcp;
    }
    PlaceLinks(settings, folder_.Path());
    plant_ = std::make_unique<Plant>(settings.devices, 1);
    floor_.addressOf = [this](int com) { return plant_->Find(com)->Wire().Address(); };
    floor_.Open();
  }

  /// Lets the plant and the ports run until `condition` holds; false if it never does.
  bool Until(const std::function<bool()>& condition) {
    return Eventually([&] {
      plant_->Run(now_ += 0.01);
      floor_.Pass(10);
      std::string chunk;
      floor_.ports.Port(0).Input(chunk);
      received_ += chunk;
      return condition();
    });
  }
  bool Sees(const std::string& text) {
    received_.clear();
    return Until([&] { return received_.find(text) != text.npos; });
  }
  std::string Say(const std::string& line) { return Obey(*plant_, line).text; }
  std::string Link() const { return folder_ / "scale1"; }

  TemporaryFolder folder_;
  std::unique_ptr<Plant> plant_;
  PlantFloor floor_;
  std::string received_;
  double now_ = 0;
};

class TcpPlantTest : public PlantTest {
 protected:
  TcpPlantTest() : PlantTest(true) {}
};

TEST_F(PlantTest, ThePortOfTheSystemReadsTheWeightAndItsCommandsAct) {
  ASSERT_TRUE(Sees(kWeight));
  floor_.ports.Port(0).Output("T\r");
  EXPECT_TRUE(Sees("000000005000\r"));
  floor_.ports.Port(0).Output("C\r");
  EXPECT_TRUE(Sees(kWeight));
}

TEST_F(PlantTest, APulledCableTakesTheLinkAwayAndThePortComesBackByItself) {
  ASSERT_TRUE(Sees(kWeight));
  EXPECT_EQ(Say("pull 1"), "COM1 Scale 1: pull\n");
  EXPECT_TRUE(Until([&] { return !fs::is_symlink(Link()); }));
  EXPECT_EQ(Say("plug 1"), "COM1 Scale 1: plug\n");
  EXPECT_TRUE(Sees(kWeight));
  EXPECT_EQ(plant_->TakeNews(), "");
}

TEST_F(TcpPlantTest, ADeviceServerCarriesWeightsAndCommandsAndComesBackAfterAPull) {
  ASSERT_TRUE(Sees(kWeight));
  floor_.ports.Port(0).Output("T\r");
  EXPECT_TRUE(Sees("000000005000\r"));
  Say("pull 1");
  for (int tick = 0; tick < 10; ++tick) plant_->Run(now_ += 0.01);
  Say("plug 1");
  EXPECT_TRUE(Sees("000000005000\r"));
}

TEST_F(PlantTest, WordsOfAPersonActOrSayWhatIsMissing) {
  EXPECT_EQ(Say("pul 1"), "There is no word \"pul\"; try help.\n");
  EXPECT_EQ(Say("silence 2 5s"), "COM2 Scale 2: silence 5s\n");
  Device& device = *plant_->Find(2);
  EXPECT_TRUE(device.Faults().On(Fault::Silence, plant_->Now() + 4.9));
  EXPECT_FALSE(device.Faults().On(Fault::Silence, plant_->Now() + 5.1));
  Say("stop 2");
  EXPECT_FALSE(device.Faults().On(Fault::Silence, plant_->Now()));
  Say("load 1 120.5");
  EXPECT_TRUE(Sees("001205000000\r"));
  Say("load 1 auto");
  EXPECT_TRUE(Sees(kWeight));
}

}  // namespace
