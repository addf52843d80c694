#include <gtest/gtest.h>

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>

#include "tests/ui/panel_plant.h"

namespace {

using enum Control;

class SetupWindowTest : public testing::Test {
 protected:
  void SetUp() override {
    plant.Launch();
    plant.plant.files.content["/plant/Tarvex-Std-CustFmt1.Cfg"] = "";
    plant.tables.ChanProtocol[4] = 10;
    plant.engine.configuration.CfgProc(CfgAction::WriteFormatFile, 10);
    plant.engine.configuration.CfgProc(CfgAction::WriteChannelFile, 4);
    plant.Button("cmdSetup(4)").click();
  }
  template <typename Widget = QWidget>
  Widget& Find(const QString& name) {
    auto* const found = plant.setupForm.findChild<Widget*>(name);
    if (found == nullptr) throw std::runtime_error("no " + name.toStdString());
    return *found;
  }

  PanelPlant plant;
  SetupFields& fields = plant.model.Fields();
};

TEST_F(SetupWindowTest, EveryFieldIsThereAndFollowsTheModel) {
  const Control unseen[] = {fDataMap, tDMDBName, cmdDMBrowse, cbDM, tDMLen, optDM, ckDM, sRect, seRect, sCmdRect};
  for (int proto : {10, 2, 0}) {
    plant.model.SetIndex({cb, 3}, proto);
    for (int control = 0; control < static_cast<int>(Count); ++control) {
      const auto which = static_cast<Control>(control);
      if (std::find(std::begin(unseen), std::end(unseen), which) != std::end(unseen)) continue;
      for (const SetupField& field : fields.Array(which)) {
        if (which == ckCmd && field.element >= kCommandRows) continue;
        if (which == lDEVICE && field.element > 0) continue;
        QWidget& widget = Find(QString::fromStdString(NameOf(field)));
        EXPECT_EQ(!widget.isHidden(), field.visible) << NameOf(field) << " of protocol " << proto;
        EXPECT_EQ(widget.isEnabledTo(widget.parentWidget()), field.enabled) << NameOf(field) << " of " << proto;
      }
    }
  }
  EXPECT_LE(plant.setupForm.width(), 800);
  EXPECT_LE(plant.setupForm.height(), 575);
}

TEST_F(SetupWindowTest, AFieldTakesWhatItMayHoldHoweverItComes) {
  auto& position = Find<QLineEdit>("t(0)");
  QTest::keyClicks(&position, "1x2");
  EXPECT_EQ(fields.At(t, 0).text, "12");
  position.clear();
  position.insert("9 8\n7");
  EXPECT_EQ(position.text(), "987");
  auto& description = Find<QLineEdit>("tDeviceDesc");
  description.selectAll();
  description.insert(QString(5000, 'a') + "\"b");
  EXPECT_EQ(fields.At(tDeviceDesc).text, std::string(5000, 'a') + "b");
  QTest::keyClicks(&Find<QLineEdit>("tRefresh"), "123456");
  EXPECT_EQ(fields.At(tRefresh).text.size(), 3U);
  emit Find<QComboBox>("cb(1)").activated(6);
  EXPECT_EQ(fields.At(cb, 1).value, 6);
  EXPECT_EQ(Find<QLabel>("lPortNote").text(), "/dev/tty7");
}

TEST_F(SetupWindowTest, TheGridIsWorkedByItsKeys) {
  auto& grid = Find<QTableView>("TDBList1");
  QTest::keyClick(&grid, Qt::Key_Down);
  QCoreApplication::processEvents();
  EXPECT_EQ(grid.currentIndex().row(), 0) << "nothing lies below the first free row";
  QTest::keyClick(&grid, Qt::Key_Return);
  EXPECT_TRUE(Find("fEntry").isVisible());
  EXPECT_FALSE(Find("cmdOk").isEnabled());
  QTest::keyClick(&plant.setupForm, Qt::Key_Escape);
  EXPECT_FALSE(Find("fEntry").isVisible());
  EXPECT_TRUE(plant.setup.IsOpen()) << "an entry is left before the screen is";

  QTest::keyClick(&grid, Qt::Key_Return);
  QTest::keyClicks(&Find<QLineEdit>("te(0)"), "2b1");
  QTest::keyClicks(&Find<QLineEdit>("te(1)"), "1b1");
  Find<QPushButton>("cmdInsert").click();
  EXPECT_EQ(grid.model()->index(0, 2).data().toString(), "2b1");
  QTest::keyClick(&grid, Qt::Key_Down);
  EXPECT_TRUE(WaitFor([&] { return grid.currentIndex().row() == 1; }));
  QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, grid.visualRect(grid.model()->index(6, 0)).center());
  EXPECT_TRUE(WaitFor([&] { return grid.currentIndex().row() == 1; }));

  QTest::keyClick(&plant.setupForm, Qt::Key_Escape);
  EXPECT_FALSE(plant.setup.IsOpen());
  EXPECT_TRUE(plant.panel.isEnabled());
}

}  // namespace
