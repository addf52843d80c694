// What the desktop program needs with all 32 scales at work: each sends 20 streams a second, every one another
// weight, to a `tarvex` of its own on a virtual display. Time is from the start of the program to the first weight
// seen on the display; processor time and memory are the program's, not the display's.
// usage: desktop_load [SECONDS]

#include <unistd.h>

#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <stdexcept>

#include "bench/child.h"
#include "bench/pty_plant.h"
#include "core/tables.h"
#include "diagnostics/screen_layout.h"

namespace {

constexpr std::int64_t kSecond = 1'000'000'000;
constexpr std::int64_t kLongestStart = 20 * kSecond;

void Rest(std::int64_t nanoseconds) {
  const timespec time{nanoseconds / kSecond, nanoseconds % kSecond};
  nanosleep(&time, nullptr);
}

/// Black digits on the light row of the first channel.
bool WeightIsSeen() {
  const CellPlace cell = PlaceOf(LayoutFor(1024), 0, Item::Gross);
  const QImage picture =
      QGuiApplication::primaryScreen()->grabWindow(0, cell.x, cell.y, cell.width, cell.height).toImage();
  int light = 0, dark = 0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      const int grey = qGray(picture.pixel(x, y));
      light += grey > 200 ? 1 : 0;
      dark += grey < 60 ? 1 : 0;
    }
  }
  return light > dark && dark > 10;
}

struct Case {
  const char* words;
  bool drawn;
  double mostCpu;  ///< percent of a core
};

constexpr double kLongestFirstWeight = 2;  // seconds
constexpr long kMostMemory = 120L * 1024;  // kilobytes

/// True if the aims are met.
bool Measure(const Case& setting, int seconds) {
  const PtyPlant plant(25, 2);
  const Child scales([&] { plant.SendOfAll(20); });
  const std::int64_t start = Now();
  const Child manager([&] {
    setenv("TARVEX_HOME", plant.Folder().c_str(), 1);
    execl(TARVEX, TARVEX, "NOMINIMIZE", setting.words, nullptr);
  });
  double firstWeight = 0;
  if (setting.drawn) {
    while (!WeightIsSeen()) {
      if (Now() - start > kLongestStart) throw std::runtime_error("no weight is seen");
      Rest(kSecond / 200);
    }
    firstWeight = static_cast<double>(Now() - start) / kSecond;
  }
  Rest(3 * kSecond);
  const std::int64_t begin = Now(), cpu = manager.CpuTime();
  Rest(seconds * kSecond);
  const double busy = Percent(manager.CpuTime() - cpu, Now() - begin);
  const long memory = manager.ResidentSize();
  std::printf("%-8s %14.2f %8.1f %10.1f\n", setting.words, firstWeight, busy, static_cast<double>(memory) / 1024);
  return memory > 0 && memory < kMostMemory && busy < setting.mostCpu && firstWeight < kLongestFirstWeight;
}

}  // namespace

int main(int count, char** texts) {
  const int seconds = count > 1 ? std::atoi(texts[1]) : 20;
  if (seconds < 1 || seconds > 1000) {
    std::fputs("usage: desktop_load [SECONDS], 1 to 1000\n", stderr);
    return 64;
  }
  QProcess server;
  server.start("Xvfb", {"-displayfd", "1", "-screen", "0", "1024x768x24", "-nolisten", "tcp"});
  QByteArray display;
  while (!display.endsWith('\n') && server.waitForReadyRead()) display += server.readAllStandardOutput();
  qputenv("DISPLAY", ":" + display.trimmed());
  qputenv("QT_QPA_PLATFORM", "xcb");
  bool met = true;
  {
    const QGuiApplication application(count, texts);
    std::printf("%-8s %14s %8s %10s\n", "word", "first weight s", "CPU %", "memory MB");
    for (const Case& setting : {Case{"GDI", true, 10}, Case{"NOGDI", false, 4}}) {
      met = Measure(setting, seconds) && met;
    }
  }
  server.terminate();
  server.waitForFinished();
  std::printf("Aims: first weight below 2 s, 10 %% of a core, 4 %% with NOGDI, 120 MB: %s\n", met ? "met" : "missed");
  return met ? 0 : 1;
}
