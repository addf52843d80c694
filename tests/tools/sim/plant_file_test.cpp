#include "tools/sim/plant_file.h"

#include <gtest/gtest.h>

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
  const std::pair<std::string_view, std::string> cases[] = {
      {"", "test.plant: there is no [scale] in it"},
      {"com = 1\n", "test.plant:1: \"com\" belongs below a [scale]"},
      {"[scale]\ncom = 1\nseed = 3", "test.plant:3: \"seed\" belongs above the first [scale]"},
      {"[scale]\n\nfrom = short\n", "test.plant:3: there is no key \"from\""},
      {"[scales]\n", "test.plant:1: expected [scale] or key = value, found \"[scales]\""},
      {"[scale]\nrate = fast\n", "test.plant:2: rate: expected a number from 0.1 to 1000"},
      {"[scale]\nrate = inf\n", "test.plant:2: rate: expected a number from 0.1 to 1000"},
      {"[scale]\ncom = 69\n", "test.plant:2: com: expected a whole number from 1 to 68"},
      {"[scale]\ncount by = 3\n", "test.plant:2: count by: expected 1, 2 or 5"},
      {"[scale]\nlink = ../x\n", "test.plant:2: link: expected a file name or a full path"},
      {"[scale]\nload = 5 at 3\n", "test.plant:2: load: expected WEIGHT for SECONDS [over SECONDS], ..."},
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
  for (const auto& [plant, error] : cases) EXPECT_EQ(ErrorOf(plant), error) << plant;
}

}  // namespace
