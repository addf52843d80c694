#include "tests/ui/virtual_desktop.h"

#include <sys/prctl.h>

#include <QScreen>
#include <QSystemTrayIcon>
#include <QWidget>
#include <csignal>
#include <stdexcept>

#include "tests/ui/virtual_display.h"
#include "tests/ui/wait_for.h"
#include "ui/program_style.h"

namespace {

constexpr int kProbeMs = 500;
constexpr int kProbes = 20;

/// A window that is mapped while the window manager is still starting is never managed and never gets the keyboard.
/// What the manager says of itself comes too early: that a fresh window gets a frame and the keyboard is the proof.
bool WindowManagerIsThere() {
  for (int probe = 0; probe < kProbes; ++probe) {
    QWidget window;
    window.show();
    window.activateWindow();
    if (WaitFor([&] { return window.isActiveWindow() && window.frameGeometry() != window.geometry(); }, kProbeMs))
      return true;
  }
  return false;
}

auto* const desktop = new VirtualDesktop;
[[maybe_unused]] const auto* const registered = testing::AddGlobalTestEnvironment(desktop);

}  // namespace

VirtualDesktop& VirtualDesktop::Instance() { return *desktop; }

void VirtualDesktop::SetUp() {
  server_.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
  qputenv("DISPLAY", StartVirtualDisplay(server_));
  qputenv("QT_QPA_PLATFORM", "xcb");
  Start(windowManager_, "openbox", {});

  static int argc = 1;
  static char name[] = "test";
  static char* argv[] = {name, nullptr};
  application_ = std::make_unique<QApplication>(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  StyleApplication();
  if (!WindowManagerIsThere()) throw std::runtime_error("no window manager");
}

void VirtualDesktop::TearDown() {
  application_.reset();
  for (QProcess* process : {&tray_, &windowManager_, &server_}) {
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

void VirtualDesktop::ShowTray(bool shown) {
  if (shown == (tray_.state() == QProcess::Running)) return;
  if (shown) {
    Start(tray_, "trayer", {"--edge", "bottom", "--align", "right", "--widthtype", "request", "--height", "24"});
  } else {
    tray_.terminate();
    tray_.waitForFinished(5000);
  }
  if (!WaitFor([&] { return QSystemTrayIcon::isSystemTrayAvailable() == shown; })) throw std::runtime_error("trayer");
}

QImage VirtualDesktop::Picture() { return QGuiApplication::primaryScreen()->grabWindow(0).toImage(); }

void VirtualDesktop::Input(const QString& command) {
  QProcess driver;
  driver.start("xdotool", command.split(' '));
  if (!WaitFor([&] { return driver.state() == QProcess::NotRunning; }) || driver.exitCode() != 0) {
    throw std::runtime_error("xdotool " + command.toStdString());
  }
}

void VirtualDesktop::Click(const QWidget& widget, double shareOfWidth) {
  ClickAt(widget.mapToGlobal(QPoint(qRound(widget.width() * shareOfWidth), widget.height() / 2)));
}

void VirtualDesktop::ClickAt(const QPoint& place) {
  Input(QString("mousemove %1 %2 click 1").arg(place.x()).arg(place.y()));
}

int VirtualDesktop::Count(const QRect& place, const std::function<bool(const QColor&)>& test) {
  const QImage picture = Picture().copy(place);
  int count = 0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) count += test(picture.pixelColor(x, y)) ? 1 : 0;
  }
  return count;
}
