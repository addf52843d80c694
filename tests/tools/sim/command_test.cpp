#include "tools/sim/command.h"

#include <gtest/gtest.h>

using namespace sim;

namespace {

using Kind = Command::Kind;

TEST(SimulatedCommandTest, ACommandIsWhatStandsBeforeCrAndAnythingElseIsLeftOut) {
  const std::pair<std::string, std::vector<Command>> cases[] = {
      {"T\r", {{Kind::Tare}}},
      {"Z\rP\rW\rC\r", {{Kind::Zero}, {Kind::Print}, {Kind::Weight}, {Kind::ClearTare}}},
      {"T\r\nZ\r\n", {{Kind::Tare}, {Kind::Zero}}},
      {"\x11T\x13\r", {{Kind::Tare}}},
      {"K12.5A\r", {{Kind::PresetTare, 12.5}}},
      {"K-3A\r", {{Kind::PresetTare, -3}}},
      {"KA\rK12.5\rK1e3A\rKinfA\rK1.2.3A\rK 5A\r", {}},
      {"t\rTT\r\rX\r", {}},
      {std::string(40, 'T') + "\rC\r", {{Kind::ClearTare}}},
      {std::string("T\0\r", 3) + "\xFFZ\r", {{Kind::Tare}, {Kind::Zero}}},
  };
  for (const auto& [bytes, commands] : cases) EXPECT_EQ(CommandReader().Take(bytes), commands) << bytes;
}

}  // namespace
