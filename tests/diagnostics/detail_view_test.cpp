#include "diagnostics/detail_view.h"

#include <gtest/gtest.h>

namespace {

TEST(DetailViewTest, EachChannelHasItsWindowAndADisabledOrDatabaseChannelHasNone) {
  const struct {
    Boolean enabled;
    int proto;
    Boolean virtualTerminal;
    DetailWindow window;
  } cases[] = {{False, 10, True, DetailWindow::None},
               {True, 0, True, DetailWindow::None},
               {True, 10, False, DetailWindow::Device},
               {True, 10, True, DetailWindow::VirtualTerminal}};
  const auto tables = std::make_unique<Tables>();
  DetailView view(*tables);
  for (const auto& c : cases) {
    tables->DetailChannel = 9;
    tables->ChanEnabled[4] = c.enabled;
    tables->ChanProtocol[4] = c.proto;
    tables->ChanVirtualTerminal[4] = c.virtualTerminal;
    EXPECT_EQ(view.Open(4), c.window);
    EXPECT_EQ(tables->DetailChannel, c.window == DetailWindow::None ? 9 : 4);
    EXPECT_EQ(tables->ChanDetailOpen[4], AsBoolean(c.window == DetailWindow::Device));
    view.Close();
    EXPECT_EQ(tables->ChanDetailOpen[4], False);
  }
}

}  // namespace
