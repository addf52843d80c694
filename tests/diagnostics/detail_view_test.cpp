#include "diagnostics/detail_view.h"

#include <gmock/gmock.h>

#include <set>

#include "tests/support/test_plant.h"

namespace {

/// A plant with one scale on a channel, whose live values go to the detail view.
class DetailViewTest : public testing::Test {
 protected:
  static constexpr int kCh = 4;
  static constexpr int kProto = 10;

  DetailViewTest() {
    plant.dialogs.onDetail = [this](int element, std::string_view text) { view.Show(element, text); };
    plant.Connect(kCh, kProto);
    tables.ProtoGrossEnable[kProto] = True;
    tables.ProtoGrossPos[kProto] = 1;
    tables.ProtoGrossLen[kProto] = 6;
    tables.ChanDecimalPlaces[kCh] = 2;
    tables.ChanDeviceDesc[kCh] = "Silo 5";
  }

  std::set<int> FilledElements() const {
    std::set<int> filled;
    for (int element = 0; element < kDetailElements; ++element) {
      if (!view.Ld(element).empty()) filled.insert(element);
    }
    return filled;
  }

  TestPlant plant;
  Tables& tables = plant.tables;
  DetailView view{tables};
};

TEST_F(DetailViewTest, EachChannelHasItsWindowAndADisabledOrDatabaseChannelHasNone) {
  const struct {
    Boolean enabled;
    int proto;
    Boolean virtualTerminal;
    DetailWindow window;
  } cases[] = {{False, kProto, True, DetailWindow::None},
               {True, 0, True, DetailWindow::None},
               {True, kProto, False, DetailWindow::Device},
               {True, kProto, True, DetailWindow::VirtualTerminal}};
  for (const auto& c : cases) {
    tables.DetailChannel = 9;
    tables.ChanEnabled[kCh] = c.enabled;
    tables.ChanProtocol[kCh] = c.proto;
    tables.ChanVirtualTerminal[kCh] = c.virtualTerminal;
    EXPECT_EQ(view.Open(kCh), c.window);
    EXPECT_EQ(tables.DetailChannel, c.window == DetailWindow::None ? 9 : kCh);
    EXPECT_EQ(tables.ChanDetailOpen[kCh], AsBoolean(c.window == DetailWindow::Device));
    view.Close();
    EXPECT_EQ(tables.ChanDetailOpen[kCh], False);
  }
}

TEST_F(DetailViewTest, TheFieldsAreBlankAtFirstAndTheNextStreamFillsThemEvenOnASteadyScale) {
  plant.Tick(kCh, "  1250\n");
  plant.Tick(kCh, "  1250\n");
  view.Open(kCh);
  EXPECT_EQ(FilledElements(), std::set<int>{kDetailDescription});
  EXPECT_EQ(view.Ld(kDetailDescription), "Silo 5");

  plant.Tick();
  EXPECT_EQ(FilledElements(), std::set<int>{kDetailDescription});
  plant.Tick(kCh, "  1250\n");
  EXPECT_EQ(FilledElements(), (std::set<int>{0, 1, 2, 3, kDetailDescription}));
  EXPECT_EQ(view.Ld(0), tables.ChanGross[kCh]);
  EXPECT_EQ(view.Ld(3), "0");
}

TEST_F(DetailViewTest, AClosedDetailAndOneOfAnotherChannelAreNotWritten) {
  plant.Connect(kCh + 1, kProto);
  view.Open(kCh + 1);
  plant.Tick(kCh, "  1250\n");
  EXPECT_TRUE(FilledElements().empty());

  view.Open(kCh);
  view.Close();
  plant.Tick(kCh, "  1260\n");
  EXPECT_EQ(FilledElements(), std::set<int>{kDetailDescription});
}

}  // namespace
