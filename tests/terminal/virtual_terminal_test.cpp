#include "terminal/virtual_terminal.h"

#include <gtest/gtest.h>

#include <set>

#include "terminal/status_catalogue.h"
#include "tests/support/test_plant.h"

namespace {

TEST(StatusCatalogue, EveryStatusHasItsNameTitleAndExplanation) {
  const struct {
    int status;
    const char* name;
    const char* title;
    const char* bodyStart;
  } cases[] = {
      {-2, "VANT_INVALID_PROCESS", "VANTAPI32.DLL Error", "A process attempted"},
      {69, "VANT_SD_WRITE_NOT_ALLOWED", "Vantor Shared Data Access Error", "Writing to"},
      {10060, "WSAETIMEDOUT", "Winsock Error", "Connection timed out. \r\nA connection"},
      {10022, "WSAEINVAL", "Winsock Error", "Some invalid argument was supplied (for example"},
      {66, "?", "Unknown Error", "Unknown error occured"},
      {0, "?", "Unknown Error", "Unknown error occured"},
  };
  for (const auto& c : cases) {
    const StatusMeaning meaning = MeaningOf(c.status);
    EXPECT_EQ(meaning.name, c.name);
    EXPECT_EQ(meaning.title, c.title);
    EXPECT_EQ(meaning.body.substr(0, std::string(c.bodyStart).size()), c.bodyStart);
  }
  std::set<std::string_view> names;
  int network = 0;
  for (int status = -10; status < 12000; ++status) {
    const StatusMeaning meaning = MeaningOf(status);
    network += meaning.title == "Winsock Error" ? 1 : 0;
    names.insert(meaning.name);
  }
  EXPECT_EQ(network, 42);
  EXPECT_EQ(names.size(), 53U);
}

TEST(VirtualTerminalTest, AbortEndsTheProgramWithEveryWeightMarkedOld) {
  TestPlant plant;
  plant.Connect(0, 2);
  VirtualTerminal& terminal = plant.manager.Terminal();
  terminal.ChooseNode(0);
  for (const auto& [choice, stopped] : {std::pair{4, False}, {5, False}, {3, True}}) {
    plant.notice.choice = choice;
    terminal.KeyDown(112);
    EXPECT_EQ(plant.tables.Stopped, stopped) << choice;
  }
  EXPECT_EQ(plant.tables.VantErrorChoice, 3);
  terminal.KeyPress(27);
  EXPECT_EQ(plant.notice.boxes.size(), 3U) << "the rest of the key goes nowhere";
  EXPECT_NE(plant.tables.ChanStatusBits[0] & StatusBit::Offline, 0);
}

}  // namespace
