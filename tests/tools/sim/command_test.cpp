#include "tools/sim/command.h"

#include <gtest/gtest.h>

using namespace sim;

namespace {

using Kind = Command::Kind;

TEST(SimulatedCommandTest, ACommandIsWhatStandsBeforeCrAndAnythingElseIsLeftOut) {
  struct Case {
    std::string bytes;
    std::vector<Command> commands;
  };
  const Case cases[] = {
      {"T\r", {{Kind::Tare}}},
      {"Z\rP\rW\rC\r", {{Kind::Zero}, {Kind::Print}, {Kind::Weight}, {Kind::ClearTare}}},
      {"T\r\nZ\r\n", {{Kind::Tare}, {Kind::Zero}}},
      {"\x11T\x13\r", {{Kind::Tare}}},
      {"K12.5A\r", {{Kind::PresetTare, 12.5}}},
      {"K0A\r", {{Kind::PresetTare, 0}}},
      {"K-3A\r", {{Kind::PresetTare, -3}}},
      {"K.5A\r", {{Kind::PresetTare, 0.5}}},
      {"KA\rK12.5\rK1e3A\rKinfA\rK1.2.3A\rK 5A\r", {}},
      {"t\rTT\r\rX\r", {}},
      {"T", {}},
      {std::string(40, 'T') + "\rC\r", {{Kind::ClearTare}}},
      {std::string("T\0\r", 3) + "\xFFZ\r", {{Kind::Tare}, {Kind::Zero}}},
  };
  for (const Case& c : cases) EXPECT_EQ(CommandReader().Take(c.bytes), c.commands) << c.bytes;
}

TEST(SimulatedCommandTest, ACommandMayArriveByteByByte) {
  CommandReader reader;
  for (const char* byte : {"K", "7", ".", "5", "A"}) EXPECT_TRUE(reader.Take(byte).empty());
  EXPECT_EQ(reader.Take("\r"), (std::vector<Command>{{Kind::PresetTare, 7.5}}));
}

}  // namespace
