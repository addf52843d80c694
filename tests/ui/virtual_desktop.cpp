#include "tests/ui/virtual_desktop.h"

#include <sys/prctl.h>

#include <QWidget>
#include <csignal>
#include <stdexcept>

#include "tests/ui/wait_for.h"

namespace {

bool WindowManagerIsThere() {
  QProcess query;
  query.start("xprop", {"-root", "_NET_SUPPORTING_WM_CHECK"});
  query.waitForFinished();
  return query.readAllStandardOutput().contains("window id");
}

auto* const desktop = new VirtualDesktop;
[[maybe_unused]] const auto* const registered = testing::AddGlobalTestEnvironment(desktop);

}  // namespace

VirtualDesktop& VirtualDesktop::Instance() { return *desktop; }

void VirtualDesktop::SetUp() {
  Start(server_, "Xvfb", {"-displayfd", "1", "-screen", "0", "1024x768x24", "-nolisten", "tcp"});
  QByteArray display;
  while (!display.endsWith('\n') && server_.waitForReadyRead(10'000)) display += server_.readAllStandardOutput();
  if (display.isEmpty()) throw std::runtime_error("no virtual display");
  qputenv("DISPLAY", ":" + display.trimmed());
  qputenv("QT_QPA_PLATFORM", "xcb");
  Start(windowManager_, "openbox", {});

  static int argc = 1;
  static char name[] = "test";
  static char* argv[] = {name, nullptr};
  application_ = std::make_unique<QApplication>(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  if (!WaitFor(WindowManagerIsThere)) throw std::runtime_error("no window manager");
}

void VirtualDesktop::TearDown() {
  application_.reset();
  for (QProcess* process : {&windowManager_, &server_}) {
    process->terminate();
    process->waitForFinished(5000);
  }
}

void VirtualDesktop::Start(QProcess& process, const QString& program, const QStringList& arguments) const {
  process.setStandardErrorFile(QProcess::nullDevice());
  process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
  process.start(program, arguments);
  if (!process.waitForStarted(10'000)) throw std::runtime_error("cannot start " + program.toStdString());
}

void VirtualDesktop::Input(const QString& command) {
  QProcess driver;
  driver.start("xdotool", command.split(' '));
  if (!WaitFor([&] { return driver.state() == QProcess::NotRunning; }) || driver.exitCode() != 0) {
    throw std::runtime_error("xdotool " + command.toStdString());
  }
}

void VirtualDesktop::Click(const QWidget& widget, double shareOfWidth) {
  const QPoint place = widget.mapToGlobal(QPoint(qRound(widget.width() * shareOfWidth), widget.height() / 2));
  Input(QString("mousemove %1 %2 click 1").arg(place.x()).arg(place.y()));
}
