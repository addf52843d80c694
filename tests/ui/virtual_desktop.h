#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QProcess>
#include <QString>
#include <functional>
#include <memory>

/// A display of its own with a window manager, on which the test program's windows are driven by real keys and
/// pointer movements. There is one for the life of the test program.
class VirtualDesktop : public testing::Environment {
 public:
  static VirtualDesktop& Instance();

  void SetUp() override;
  void TearDown() override;

  /// One command of the input driver, such as "key Escape"; events go on meanwhile.
  void Input(const QString& command);
  /// Starts the notification area at the lower right corner, or takes it away.
  void ShowTray(bool shown);
  /// Moves the pointer to the middle of a widget, or to a share of its width, and clicks.
  void Click(const QWidget& widget, double shareOfWidth = 0.5);
  void ClickAt(const QPoint& place);

  /// What is seen on the display.
  static QImage Picture();
  /// Pixels of a place on the display of which `test` is true.
  static int Count(const QRect& place, const std::function<bool(const QColor&)>& test);

 private:
  void Start(QProcess& process, const QString& program, const QStringList& arguments) const;

  QProcess server_;
  QProcess windowManager_;
  QProcess tray_;
  std::unique_ptr<QApplication> application_;
};
