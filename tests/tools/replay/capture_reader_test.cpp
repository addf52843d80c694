#include <gtest/gtest.h>

#include <sstream>

#include "tools/replay/capture.h"

namespace {

/// The bytes of all ticks of a capture in quotes, up to its first fault.
std::string Steps(const std::string& text) {
  std::istringstream stream(text);
  CaptureReader reader(stream, "c");
  std::string steps;
  try {
    while (const auto step = reader.Next()) {
      if (const auto* arriving = std::get_if<ArrivingBytes>(&*step)) steps += "'" + arriving->bytes + "' ";
    }
  } catch (const CaptureError& fault) {
    steps += fault.what();
  }
  return steps;
}

TEST(CaptureReaderTest, EachLineIsATickUnlessItIsACommentOrAnAction) {
  EXPECT_EQ(Steps("41 4b4C\n\n  \t\n# comment\n 41 # and a comment\r\n  # only that\n"), "'AKL' '' '' 'A' ");
  EXPECT_EQ(Steps(""), "");
}

TEST(CaptureReaderTest, ALineThatCannotBeReadIsNamedWithItsFault) {
  const std::pair<std::string, std::string> cases[] = {
      {"4G", "'G' is no hex digit"},
      {"41 4", "the last byte has one hex digit only"},
      {"!print 3=4", "'!print' is unknown; there are !device and !opc"},
      {"!device CCmd", "'CCmd' is not of the form name=value"},
      {"!device Cmd=3", "a Device has no field 'Cmd'"},
      {"!device CCmd=40000", "'40000' is out of range"},
      {"!device CCmd=3x", "'3x' is no number"},
      {"!opc 8=1", "there is no OPC item 8, only 0 to 7"},
      {"!opc x=1", "'x' is no number"},
  };
  for (const auto& [line, fault] : cases) EXPECT_EQ(Steps("# first\n41\n" + line), "'A' c:3: " + fault);
}

}  // namespace
