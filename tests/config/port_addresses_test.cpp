#include "config/port_addresses.h"

#include <gtest/gtest.h>

#include "tests/support/test_plant.h"

namespace {

const std::string kPath = "/plant/Tarvex-Ports.Cfg";

template <typename Step>
std::string Fault(const Step& step) {
  try {
    step();
    return {};
  } catch (const RunTimeError& fault) {
    return std::to_string(fault.Number()) + " " + fault.Description();
  }
}

struct Loaded {
  PortAddresses addresses;
  std::string fault;
  explicit Loaded(const std::string& content) {
    MemoryFiles files;
    files.content[kPath] = content;
    fault = Fault([&] { addresses.Load(files, "/plant"); });
  }
  /// The address of a port, or the fault that keeps it closed.
  std::string Of(int port) {
    std::string address;
    const std::string closed = Fault([&] { address = addresses.AddressOf(port); });
    return closed + address;
  }
};

TEST(PortAddressesTest, ADamagedLineIsNamedAndClosesItsPortAloneOrAllIfItsNumberCannotBeRead) {
  const struct {
    const char* line;
    std::string fault;
    bool closesAll;
  } cases[] = {
      {"COM2,\"/dev/x\"", "13 Type mismatch: " + kPath + ", line 2, field 1 (port): found \"COM2\"", true},
      {"69,\"/dev/x\"",
       "9 Subscript out of range: " + kPath + ", line 2, field 1 (port): found \"69\", possible are 1 to 68", true},
      {"2", "62 Input past end of file: " + kPath + ", line 2, field 2 (address): the file ends before it", false},
      {"2,\" \"", "13 Type mismatch: " + kPath + ", line 2, field 2 (address): it is empty", false},
      {"2,\"/dev/x",
       "62 Input past end of file: " + kPath + ", line 2, field 2 (address): the quote that opens it is not closed",
       false},
      {"2,/dev/x\"",
       "13 Type mismatch: " + kPath + ", line 2, field 2 (address): a double quote is missing or one too many", false},
      {"2,\"/dev/ttyS1\"0",
       "13 Type mismatch: " + kPath + ", line 2, field 2 (address): characters stand behind the closing quote", false},
      {"2,\"/dev/x\",9600",
       "13 Type mismatch: " + kPath + ", line 2, field 3 (end of line): a line holds a port and its address", false}};
  for (const auto& c : cases) {
    Loaded ports("1,\"/dev/a\"\r\n" + std::string(c.line) + "\r\n3,/dev/c\r\n4,later damage\"\r\n");
    EXPECT_EQ(ports.fault, c.fault) << c.line;
    const std::string why = c.fault.substr(c.fault.find(' ') + 1);
    EXPECT_EQ(ports.Of(2), "8002 COM2 cannot be opened: " + why);
    EXPECT_EQ(ports.Of(1), c.closesAll ? "8002 COM1 cannot be opened: " + why : "/dev/a") << c.line;
    EXPECT_EQ(ports.Of(3), c.closesAll ? "8002 COM3 cannot be opened: " + why : "/dev/c") << c.line;
    EXPECT_EQ(ports.Of(5), c.closesAll ? "8002 COM5 cannot be opened: " + why : "/dev/ttyS4") << c.line;
  }
}

TEST(PortAddressesTest, AFileThatCannotBeReadClosesAllPorts) {
  MemoryFiles files;
  files.broken[kPath] = ErrorNumber::PermissionDenied;
  PortAddresses addresses;
  EXPECT_EQ(Fault([&] { addresses.Load(files, "/plant"); }), "70 Cannot use " + kPath);
  EXPECT_EQ(Fault([&] { addresses.AddressOf(1); }), "8002 COM1 cannot be opened: Cannot use " + kPath);
}

TEST(PortAddressesTest, OfTwoLinesForOnePortTheLastOneHoldsDamagedOrNot) {
  EXPECT_EQ(Loaded("2,\"/dev/x\r\n2,\"/dev/y\"\r\n").Of(2), "/dev/y");
  EXPECT_TRUE(Loaded("2,\"/dev/y\"\r\n2,\"/dev/x\r\n").Of(2).starts_with("8002 COM2 cannot be opened: "));
}

}  // namespace
