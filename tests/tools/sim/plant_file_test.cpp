#include "tools/sim/plant_file.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

using namespace sim;

namespace {

std::string ErrorOf(std::string_view plant) {
  try {
    ReadPlant(plant, "test.plant");
  } catch (const PlantFileError& error) {
    return error.what();
  }
  return {};
}

TEST(PlantFileTest, AFaultNamesFileLineAndKey) {
  struct Case {
    std::string_view plant;
    std::string error;
  };
  const Case cases[] = {
      {"", "test.plant: there is no [scale] in it"},
      {"# nothing\n", "test.plant: there is no [scale] in it"},
      {"com = 1\n", "test.plant:1: \"com\" belongs below a [scale]"},
      {"[scale]\ncom = 1\nseed = 3", "test.plant:3: \"seed\" belongs above the first [scale]"},
      {"[scale]\n\nfrom = short\n", "test.plant:3: there is no key \"from\""},
      {"[scales]\n", "test.plant:1: expected [scale] or key = value, found \"[scales]\""},
      {"[scale]\nrate = fast\n", "test.plant:2: rate: expected a number from 0.1 to 1000"},
      {"[scale]\nrate = 5x\n", "test.plant:2: rate: expected a number from 0.1 to 1000"},
      {"[scale]\nrate = inf\n", "test.plant:2: rate: expected a number from 0.1 to 1000"},
      {"[scale]\nrate =\n", "test.plant:2: rate: expected a number from 0.1 to 1000"},
      {"[scale]\ncom = 69\n", "test.plant:2: com: expected a whole number from 1 to 68"},
      {"[scale]\ncom = 1.5\n", "test.plant:2: com: expected a whole number from 1 to 68"},
      {"[scale]\ncount by = 3\n", "test.plant:2: count by: expected 1, 2 or 5"},
      {"[scale]\nunits = t\n", "test.plant:2: units: expected lb or kg"},
      {"[scale]\nform = long\n", "test.plant:2: form: expected standard, short or ascii"},
      {"[scale]\nlink = ../x\n", "test.plant:2: link: expected a file name or a full path"},
      {"[scale]\nload = 5 at 3\n", "test.plant:2: load: expected WEIGHT for SECONDS [over SECONDS], ..."},
      {"[scale]\nload = 5 for 3,\n", "test.plant:2: load: expected WEIGHT for SECONDS [over SECONDS], ..."},
      {"[scale]\nload = 5 for 0\n", "test.plant:2: load: expected seconds from 0.1 to 86400"},
      {"[scale]\nfault = fire every 3 for 1\n",
       "test.plant:2: fault: expected silence, garbage, cut, split or unplug every SECONDS for SECONDS"},
      {"[scale]\nfault = cut every 3 for 5\n",
       "test.plant:2: fault: expected a fault that is over before it comes again"},
      {"[scale]\nrate = 5\nrate = 6\n", "test.plant:3: \"rate\" is given twice"},
      {"[scale]\nname = a\n\n\n", "test.plant:1: this scale has no \"com\""},
      {"[scale]\ncom = 1\n[scale]\ncom = 1\n", "test.plant:3: COM1 is used twice"},
      {"[scale]\ncom = 1\n[scale]\ncom = 2\nlink = scale1", "test.plant:3: the link \"scale1\" is used twice"},
      {"[scale]\ncom = 1\nlink = a\ntcp = any", "test.plant:1: COM1 has a link and TCP; it can be on one line alone"},
      {"[scale]\ncom = 1\ndecimals = 3\ncapacity = 100\n",
       "test.plant:1: the capacity of COM1 is beyond 99.999, the largest weight of its frames"},
      {"[scale]\ncom = 1\ncapacity = 100\ntare = 101", "test.plant:1: the tare of COM1 is beyond its capacity of 100"},
  };
  for (const Case& c : cases) EXPECT_EQ(ErrorOf(c.plant), c.error) << c.plant;
}

TEST(PlantFileTest, EveryKeyReachesItsDevice) {
  const PlantSettings plant = ReadPlant(
      "links = /tmp/l\r\nseed = 9\r\n[scale]\r\ncom = 4\r\nname = Tank #3\r\nlink = tank\r\nform = ascii\r\n"
      "mode = request\nrate = 2.5\nbaud = 4800\nunits = kg\ncapacity = 60\ndecimals = 2\ncount by = 5\n"
      "load = 1 for 2s, -3.5 for 4 over 2\nphase = 7\novershoot = 0.2\nsettle = 3\nnoise = 0.01\ntare = 1.5\n"
      "zero error = -0.5\nfault = cut every 9 for 3\nfault = silence every 8 for 2\n[scale]\ncom = 5\ntcp = 4001",
      "test.plant");
  EXPECT_EQ(plant.links, "/tmp/l");
  EXPECT_EQ(plant.seed, 9U);
  ASSERT_EQ(plant.devices.size(), 2U);
  const DeviceSettings& d = plant.devices[0];
  EXPECT_EQ(d.com, 4);
  EXPECT_EQ(d.name, "Tank #3");
  EXPECT_EQ(d.link, "tank");
  EXPECT_EQ(d.form, FrameForm::Ascii);
  EXPECT_TRUE(d.onRequest);
  EXPECT_EQ(d.rate, 2.5);
  EXPECT_EQ(d.baud, 4800);
  EXPECT_TRUE(d.scale.kilograms);
  EXPECT_EQ(d.scale.capacity, 60);
  EXPECT_EQ(d.scale.decimals, 2);
  EXPECT_EQ(d.scale.countBy, 5);
  ASSERT_EQ(d.scale.load.size(), 2U);
  EXPECT_EQ(d.scale.load[1].weight, -3.5);
  EXPECT_EQ(d.scale.load[1].seconds, 4);
  EXPECT_EQ(d.scale.load[1].over, 2);
  EXPECT_EQ(d.scale.phase, 7);
  EXPECT_EQ(d.scale.overshoot, 0.2);
  EXPECT_EQ(d.scale.settle, 3);
  EXPECT_EQ(d.scale.noise, 0.01);
  EXPECT_EQ(d.scale.tare, 1.5);
  EXPECT_EQ(d.scale.zeroError, -0.5);
  EXPECT_FALSE(d.faults.On(Fault::Cut, 5.9));
  EXPECT_TRUE(d.faults.On(Fault::Cut, 6.1));
  EXPECT_TRUE(d.faults.On(Fault::Silence, 6.1));
  EXPECT_TRUE(plant.devices[1].onTcp);
  EXPECT_EQ(plant.devices[1].tcpPort, 4001);
}

TEST(PlantFileTest, TheDemonstrationPlantHasOneDeviceOfEachKind) {
  std::ifstream file(TARVEX_SIM_FOLDER "/demo.plant");
  std::ostringstream text;
  text << file.rdbuf();
  const auto devices = ReadPlant(text.str(), "demo.plant").devices;
  ASSERT_EQ(devices.size(), 12U);
  int tcp = 0, shortForm = 0, silent = 0, garbled = 0, net = 0;
  for (const DeviceSettings& device : devices) {
    tcp += device.onTcp;
    shortForm += device.form == FrameForm::Short;
    silent += device.faults.On(Fault::Silence, 59);
    garbled += device.faults.On(Fault::Garbage, 24.5);
    net += device.scale.tare > 0;
    EXPECT_LE(device.name.size(), 24U) << device.name << " is too wide for its cell";
  }
  EXPECT_EQ(tcp, 1);
  EXPECT_EQ(shortForm, 1);
  EXPECT_EQ(silent, 1);
  EXPECT_EQ(garbled, 1);
  EXPECT_EQ(net, 1);
}

}  // namespace
