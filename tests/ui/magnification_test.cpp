#include "ui/magnification.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QWindow>

#include "tests/ui/panel_plant.h"
#include "ui/dialog_style.h"
#include "ui/double_click_guard.h"
#include "ui/frm_detail.h"
#include "ui/frm_refresh.h"

namespace {

void Enlarge(const char* factor) {
  qputenv("TARVEX_SCALE", factor);
  FollowDisplay(LayoutFor(1024));
}

/// Right and lower edges of all that is shown in a window, at the factor of the moment.
std::map<QString, QSize> SizesIn(const QWidget& window) {
  std::map<QString, QSize> sizes;
  for (const QWidget* widget : window.findChildren<QWidget*>()) {
    if (!widget->objectName().isEmpty() && widget->isVisible()) sizes[widget->objectName()] = widget->size();
  }
  return sizes;
}

TEST(MagnificationTest, ADialogThatStandsFollowsAndComesBackToItsLayout) {
  PanelPlant plant;
  plant.Launch();
  for (QDialog* dialog : std::initializer_list<QDialog*>{new frmRefresh(plant.engine), new frmDetail}) {
    Enlarge("1");
    ShowAbove(*dialog, nullptr);
    QCoreApplication::processEvents();
    const QSize before = dialog->size();
    const auto inside = SizesIn(*dialog);
    Enlarge("2");
    QCoreApplication::processEvents();
    EXPECT_NEAR(dialog->width(), 2 * before.width(), 0.06 * before.width());
    EXPECT_NEAR(dialog->height(), 2 * before.height(), 0.06 * before.height());
    for (const auto& [name, size] : SizesIn(*dialog)) {
      const QSize at1 = inside.at(name);
      EXPECT_NEAR(size.height(), 2 * at1.height(), 0.15 * at1.height() + 2) << name.toStdString();
    }
    Enlarge("1");
    QCoreApplication::processEvents();
    EXPECT_EQ(dialog->size(), before);
    EXPECT_EQ(SizesIn(*dialog), inside);
    delete dialog;
  }
}

TEST(MagnificationTest, ThePanelIsDrawnAnewAtEachFactorAndItsButtonsStayBesideTheirRows) {
  PanelPlant plant;
  plant.Connect(0);
  plant.Launch();
  for (const char* factor : {"1.375", "2.75", "1", "1.6"}) {
    Enlarge(factor);
    plant.Tick(0, "  1250\n");
    const double expected = std::round(8 * QString(factor).toDouble()) / 8;
    EXPECT_EQ(plant.panel.size(), QSize(1024, 768) * expected) << factor;
    EXPECT_EQ(plant.panel.Surface().WindowImage().size(), plant.panel.size()) << factor;
    const CellPlace row = PlaceOf(LayoutFor(1024), 31, Item::Error);
    const QRect button = plant.Button("cmdDetail(31)").geometry();
    EXPECT_NEAR(button.center().y(), (row.y + row.height / 2) * expected, 3 * expected) << factor;
    EXPECT_TRUE(WaitFor([&] { return plant.tables.ScreenPainted == True; }));
  }
  for (const char* nonsense : {"", "0", "-3", "large"}) {
    Enlarge(nonsense);
    EXPECT_GE(Magnification(), 1) << nonsense;
  }
}

TEST(DoubleClickGuardTest, TheSecondClickGoesToNoOtherWindow) {
  const DoubleClickGuard guard;
  QPushButton first("X"), second("End");
  int ended = 0;
  QObject::connect(&first, &QPushButton::clicked, [&] {
    second.setGeometry(first.geometry());
    second.show();
    first.hide();
  });
  QObject::connect(&second, &QPushButton::clicked, [&] { ++ended; });
  first.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&first));
  QTest::mouseClick(first.windowHandle(), Qt::LeftButton, {}, {5, 5});
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&second));
  QTest::mouseClick(second.windowHandle(), Qt::LeftButton, {}, {5, 5});
  EXPECT_EQ(ended, 0);
  EXPECT_FALSE(second.isDown());
  QTest::mouseClick(second.windowHandle(), Qt::LeftButton, {}, {5, 5}, 1500);
  EXPECT_EQ(ended, 1);
}

}  // namespace
