#include "config/port_addresses.h"

#include <gtest/gtest.h>

#include "tests/support/test_plant.h"

namespace {

constexpr const char* kPath = "/plant/Tarvex-Ports.Cfg";

TEST(PortAddressesTest, APortWithoutALineHasTheMachinesOwnName) {
  MemoryFiles files;
  PortAddresses addresses;
  addresses.Load(files, kPath);
  EXPECT_EQ(addresses.AddressOf(1), "/dev/ttyS0");
  EXPECT_EQ(addresses.AddressOf(68), "/dev/ttyS67");
  EXPECT_TRUE(files.content.empty()) << "a missing file is not created";
}

TEST(PortAddressesTest, TheLastLineOfAPortHoldsAndLoadingAgainForgetsTheOldOnes) {
  MemoryFiles files;
  files.content[kPath] = "3,\"/dev/a\"\r\n\r\n68,\"tcp://host:4001\"\n3,\"/dev/with, comma\"";
  PortAddresses addresses;
  addresses.Load(files, kPath);
  EXPECT_EQ(addresses.AddressOf(3), "/dev/with, comma");
  EXPECT_EQ(addresses.AddressOf(68), "tcp://host:4001");
  files.content[kPath] = "4,\"/dev/b\"\r\n";
  addresses.Load(files, kPath);
  EXPECT_EQ(addresses.AddressOf(3), "/dev/ttyS2");
}

struct DamagedLine {
  const char* line;
  const char* fault;
};

TEST(PortAddressesTest, ADamagedLineIsNamedAndTheGoodOnesHold) {
  const DamagedLine cases[] = {
      {"COM2,\"/dev/x\"", "13 Type mismatch: /plant/Tarvex-Ports.Cfg, line 2, field 1 (port): found \"COM2\""},
      {"2", "62 Input past end of file: /plant/Tarvex-Ports.Cfg, line 2, field 2 (address): the file ends before it"},
      {"2,\" \"", "13 Type mismatch: /plant/Tarvex-Ports.Cfg, line 2, field 2 (address): it is empty"},
      {"2,\"/dev/x",
       "62 Input past end of file: /plant/Tarvex-Ports.Cfg, line 2, field 2 (address): the quote that opens it is not "
       "closed"},
      {"0,\"/dev/x\"",
       "9 Subscript out of range: /plant/Tarvex-Ports.Cfg, line 2, field 1 (port): found \"0\", possible are 1 to 68"},
      {"2,\"/dev/x\",9600",
       "13 Type mismatch: /plant/Tarvex-Ports.Cfg, line 2, field 3 (end of line): a line holds a port and its address"},
  };
  for (const DamagedLine& c : cases) {
    MemoryFiles files;
    files.content[kPath] = std::string("1,\"/dev/a\"\r\n") + c.line + "\r\n3,\"/dev/c\"\r\nlater damage\r\n";
    PortAddresses addresses;
    try {
      addresses.Load(files, kPath);
      ADD_FAILURE() << c.line;
    } catch (const RunTimeError& fault) {
      EXPECT_EQ(std::to_string(fault.Number()) + " " + fault.Description(), c.fault);
    }
    EXPECT_EQ(addresses.AddressOf(1), "/dev/a") << c.line;
    EXPECT_EQ(addresses.AddressOf(2), "/dev/ttyS1") << c.line;
    EXPECT_EQ(addresses.AddressOf(3), "/dev/c") << c.line;
  }
}

}  // namespace
