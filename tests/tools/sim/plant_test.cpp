#include "tools/sim/plant.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <system_error>

#include "tests/platform/plant_floor.h"
#include "tools/sim/link_folder.h"
#include "tools/sim/plant_file.h"
#include "tools/sim/word_sources.h"
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
    PlaceLinks(settings.devices, folder_.Path());
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

TEST_F(PlantTest, AProgramThatOpensThePortHearsNothingFromBefore) {
  ASSERT_TRUE(Sees(kWeight));
  for (int tick = 0; tick < 100; ++tick) plant_->Run(now_ += 0.01);  // unread
  floor_.ports.Port(0).Close();
  for (int tick = 0; tick < 100; ++tick) plant_->Run(now_ += 0.01);
  const Descriptor port(open(Link().c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK));
  char byte;
  EXPECT_EQ(read(port.Get(), &byte, 1), -1);
  EXPECT_EQ(errno, EAGAIN);
}

TEST_F(PlantTest, ACommandFromAProgramThatHasGoneAgainActs) {
  floor_.ports.Port(0).Close();
  { std::ofstream(Link()) << "T\r"; }
  EXPECT_TRUE(Eventually([&] {
    plant_->Run(now_ += 0.01);
    return plant_->Find(1)->Platform().Read().net;
  }));
}

TEST_F(PlantTest, AReaderWhoComesLateFindsWholeFrames) {
  ASSERT_TRUE(Sees(kWeight));
  for (int tick = 0; tick < 10'000; ++tick) plant_->Run(now_ += 0.1);  // far more than the line holds
  received_.clear();
  ASSERT_TRUE(Until([&] { return received_.size() > 6000; }));
  for (std::size_t start = received_.find('\x02'); start + 34 < received_.size(); start += 17) {
    ASSERT_EQ(received_.substr(start + 4, 13), kWeight) << start;
  }
}

TEST_F(TcpPlantTest, ADeviceServerServesOneCallerAtATimeAndComesBackAfterAPull) {
  ASSERT_TRUE(Sees(kWeight));
  floor_.ports.Port(0).Output("T\r");
  EXPECT_TRUE(Sees("000000005000\r"));
  PlantFloor second;
  second.address = floor_.addressOf(1);
  second.Open();
  received_.clear();
  EXPECT_TRUE(Until([&] {
    second.Pass(10);
    return received_.size() > 300;
  }));
  EXPECT_EQ(second.ports.Port(0).InBufferCount(), 0U);
  second.ports.Port(0).Close();

  Say("pull 1");
  for (int tick = 0; tick < 10; ++tick) plant_->Run(now_ += 0.01);
  Say("plug 1");
  EXPECT_TRUE(Sees("000000005000\r"));
  floor_.ports.Port(0).Close();
  EXPECT_TRUE(Eventually([&] {
    plant_->Run(now_ += 0.01);
    return !plant_->Find(1)->Wire().Listened();
  }));
  floor_.Open();
  EXPECT_TRUE(Sees("000000005000\r"));
}

TEST_F(PlantTest, WordsOfAPersonActOrSayWhatIsMissing) {
  struct Case {
    std::string line;
    std::string answer;
  };
  const Case cases[] = {
      {"  ", ""},
      {"pul 1", "There is no word \"pul\"; try help.\n"},
      {"pull", "Which device? Write its COM number behind \"pull\".\n"},
      {"pull x", "Which device? Write its COM number behind \"pull\".\n"},
      {"pull 7", "This plant has no COM7.\n"},
      {"load 1", "Which weight? Write: load COM WEIGHT\n"},
      {"load 1 heavy", "Which weight? Write: load COM WEIGHT\n"},
      {"load 1 1e300", "Which weight? Write: load COM WEIGHT\n"},
      {"load 1 5 6", "There is too much behind \"5\".\n"},
      {"silence 1 long", "For how long? Write seconds, on or off.\n"},
      {"silence 2 5s", "COM2 Scale 2: silence 5s\n"},
      {"quit", "The plant ends.\n"},
  };
  for (const Case& c : cases) EXPECT_EQ(Say(c.line), c.answer) << c.line;
  EXPECT_TRUE(Obey(*plant_, "quit").end);

  Device& device = *plant_->Find(2);
  EXPECT_TRUE(device.Faults().On(Fault::Silence, plant_->Now() + 4.9));
  EXPECT_FALSE(device.Faults().On(Fault::Silence, plant_->Now() + 5.1));
  Say("split 2 on");
  EXPECT_TRUE(device.Faults().On(Fault::Split, 1e6));
  Say("split 2 off");
  EXPECT_FALSE(device.Faults().On(Fault::Split, plant_->Now()));
  Say("stop 2");
  EXPECT_FALSE(device.Faults().On(Fault::Silence, plant_->Now()));
  Say("load 1 120.5");
  EXPECT_TRUE(Sees("001205000000\r"));
  Say("load 1 auto");
  EXPECT_TRUE(Sees(kWeight));
}

TEST_F(PlantTest, TheLinksGoWithThePlantAndThePortFileNamesThem) {
  EXPECT_EQ(PortFile(*plant_), "1,\"" + Link() + "\"\r\n2,\"" + folder_ / "scale2" + "\"\r\n");
  plant_.reset();
  EXPECT_TRUE(fs::is_empty(folder_.Path()));
}

TEST(PlantLinksTest, AnOldLinkIsReplacedAndAFileIsLeftAlone) {
  const TemporaryFolder folder;
  PlantSettings settings = PlainPlant(1, 10);
  PlaceLinks(settings.devices, folder.Path());
  fs::create_symlink("/dev/pts/of-a-killed-run", folder / "scale1");
  Plant(settings.devices, 1).Run(0.1);
  EXPECT_FALSE(fs::is_symlink(folder / "scale1"));

  std::ofstream(folder / "scale1") << "precious";
  EXPECT_THROW(Plant(settings.devices, 1), std::system_error);
  EXPECT_EQ(fs::file_size(folder / "scale1"), 8U);
  EXPECT_THROW(ControlPipe(folder / "scale1"), std::system_error);
  EXPECT_EQ(fs::file_size(folder / "scale1"), 8U);
}

TEST(PlantLinksTest, AFolderHoldsTheLinksOfOneSimulator) {
  const TemporaryFolder folder;
  {
    const LinkFolder first(folder / "new/links/");
    EXPECT_EQ(first.Path(), folder / "new/links");
    EXPECT_THROW(LinkFolder(folder / "new/links"), std::runtime_error);
  }
  EXPECT_NO_THROW(LinkFolder(folder / "new/links"));
}

TEST(PlantLinksTest, WordsComeThroughTheControlPipeFromOneSpeakerAfterTheOther) {
  const TemporaryFolder folder;
  {
    const ControlPipe pipe(folder / "control");
    WordSource words(pipe.Handle());
    EXPECT_TRUE(words.Lines().empty());
    for (const std::string line : {"pull 3", "plug 3"}) {
      { std::ofstream(folder / "control") << line << "\n"; }
      EXPECT_EQ(words.Lines(), std::vector<std::string>{line});
    }
    EXPECT_GE(words.Watched(), 0);
  }
  EXPECT_FALSE(fs::exists(folder / "control"));
}

}  // namespace
