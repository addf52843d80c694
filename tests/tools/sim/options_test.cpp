#include "tools/sim/options.h"

#include <gtest/gtest.h>

using namespace sim;

namespace {

std::string ErrorOf(const std::vector<std::string_view>& arguments) {
  try {
    ReadOptions(arguments);
  } catch (const UsageError& error) {
    return error.what();
  }
  return {};
}

TEST(SimulatorOptionsTest, AFaultSaysWhichOptionAndWhatItNeeds) {
  struct Case {
    std::vector<std::string_view> arguments;
    std::string error;
  };
  const Case cases[] = {
      {{}, "Give either --plant FILE or --scales N."},
      {{"--plant", "a", "--scales", "3"}, "Give either --plant FILE or --scales N."},
      {{"--plnt", "a"}, "There is no option --plnt."},
      {{"--plant"}, "--plant needs a value behind it."},
      {{"--scales", "0"}, "--scales needs a whole number of scales from 1 to 68, not \"0\"."},
      {{"--scales", "69"}, "--scales needs a whole number of scales from 1 to 68, not \"69\"."},
      {{"--scales", "3", "--rate", "0"}, "--rate needs frames a second from 0.1 to 1000, not \"0\"."},
      {{"--scales", "3", "--seconds", "-1"}, "--seconds needs a number of seconds, not \"-1\"."},
      {{"--scales", "3", "--seed", "x"}, "--seed needs a whole number from 0 on, not \"x\"."},
      {{"--scales", "32", "--rate", "20", "--seconds", "5s", "--links", "l"}, ""},
      {{"--plant", "a", "--help"}, ""},
  };
  for (const Case& c : cases) EXPECT_EQ(ErrorOf(c.arguments), c.error);
}

}  // namespace
