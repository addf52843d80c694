#include "config/port_addresses.h"

#include <gtest/gtest.h>

#include "tests/support/test_plant.h"

namespace {

constexpr const char* kPath = "/plant/Tarvex-Ports.Cfg";

TEST(PortAddressesTest, ADamagedLineIsNamedAndTheGoodOnesHold) {
  const std::pair<const char*, const char*> cases[] = {
      {"COM2,\"/dev/x\"", "13 Type mismatch: /plant/Tarvex-Ports.Cfg, line 2, field 1 (port): found \"COM2\""},
      {"2", "62 Input past end of file: /plant/Tarvex-Ports.Cfg, line 2, field 2 (address): the file ends before it"},
      {"2,\" \"", "13 Type mismatch: /plant/Tarvex-Ports.Cfg, line 2, field 2 (address): it is empty"},
      {"2,\"/dev/x\",9600",
       "13 Type mismatch: /plant/Tarvex-Ports.Cfg, line 2, field 3 (end of line): a line holds a port and its "
       "address"}};
  for (const auto& [line, text] : cases) {
    MemoryFiles files;
    files.content[kPath] = std::string("1,\"/dev/a\"\r\n") + line + "\r\n3,\"/dev/c\"\r\nlater damage\r\n";
    PortAddresses addresses;
    try {
      addresses.Load(files, "/plant");
      ADD_FAILURE() << line;
    } catch (const RunTimeError& fault) {
      EXPECT_EQ(std::to_string(fault.Number()) + " " + fault.Description(), text);
    }
    EXPECT_EQ(addresses.AddressOf(1), "/dev/a") << line;
    EXPECT_EQ(addresses.AddressOf(2), "/dev/ttyS1") << line;
    EXPECT_EQ(addresses.AddressOf(3), "/dev/c") << line;
  }
}

}  // namespace
