#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QProcess>
#include <QString>
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
  /// Moves the pointer to the middle of a widget, or to a share of its width, and clicks.
  void Click(const QWidget& widget, double shareOfWidth = 0.5);

 private:
  void Start(QProcess& process, const QString& program, const QStringList& arguments) const;

  QProcess server_;
  QProcess windowManager_;
  std::unique_ptr<QApplication> application_;
};
