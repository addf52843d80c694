// A thousand times stopped and started again: the real windows, ports and message loop over 32 pseudo-terminals. In
// each round all channels are opened, a weight of the last scale is drawn, and the panel is closed. What grows after
// the first hundred rounds would be a leak.
// usage: desktop_rounds [ROUNDS]

#include <QApplication>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

#include "app/manager.h"
#include "bench/child.h"
#include "bench/pty_plant.h"
#include "config/port_addresses.h"
#include "core/gdi_timer.h"
#include "core/scan_engine.h"
#include "core/shutdown.h"
#include "core/startup.h"
#include "core/transmission.h"
#include "platform/posix/posix_files.h"
#include "platform/posix/posix_serial_ports.h"
#include "platform/posix/posix_system.h"
#include "platform/qt/qt_event_loop.h"
#include "tests/platform/machine.h"
#include "tests/support/test_plant.h"
#include "tests/ui/wait_for.h"
#include "ui/dialogs.h"
#include "ui/frm_tarvex_startup.h"
#include "ui/frm_txm.h"
#include "ui/qt_canvas.h"

namespace {

constexpr int kSettled = 100;        // rounds
constexpr long kMostGrowth = 2'000;  // kilobytes

struct Holdings {
  long memory;  ///< kilobytes
  std::size_t descriptors, drawingObjects;
};

/// The desktop without its bus and its boxes.
class DesktopPlant {
 public:
  DesktopPlant() {
    dialogs.Use(engine, manager.Terminal());
    startupForm.Use(engine, [this] { panel.Unload(); });
    panel.Use(engine, dialogs);
    events.Timer1().OnTick([this] { Timer1Tick(engine); });
    events.TxTimer().OnTick([this] { TxTimerTick(engine); });
    events.GDITimer().OnTick([this] { GDITimerTick(engine); });
    if (!Main(engine, "NOMINIMIZE")) throw std::runtime_error(notice.boxes.at(0).text);
    addresses.Load(files, plant.Folder());
    LoadStartupForm(engine);
  }

  void Round(int weight) {
    const int last = PtyPlant::kScales - 1;
    LaunchMainScreen(engine);
    Require(WaitFor([&] { return engine.tables.ChannelsInitialised == True; }), "the channels were not opened");
    plant.Send(last, weight);
    Require(WaitFor([&] {
              return engine.tables.ChanGross[last] == std::to_string(weight) &&
                     engine.tables.ChanDirty[Item::Gross][last] == False;
            }),
            "the weight was not drawn");
    CloseTXMWindow(engine);
    Require(notice.boxes.empty(), "there was a box");
  }
  Holdings Held() const { return {ResidentSizeOf("self"), OpenDescriptors(), panel.Surface().Held()}; }

 private:
  static void Require(bool holds, const char* otherwise) {
    if (!holds) throw std::runtime_error(otherwise);
  }

  PtyPlant plant{25, 2};
  PosixSystem system{plant.Folder(), {1024, 768}};
  PosixFiles files;
  PortAddresses addresses;
  PosixSerialPorts ports{[this](int number) { return addresses.AddressOf(number); }};
  QtEventLoop events;
  MemoryNotice notice;
  MemoryOpc opc;
  MemoryTerminals terminals;
  MemoryDatabases databases;
  Dialogs dialogs;
  frmTarvexStartup startupForm;
  frmTXM panel;
  Manager manager{{system, events, ports, files, notice, opc, terminals, databases, startupForm, panel, dialogs},
                  plant.Folder()};
  Engine& engine = manager.Parts();
};

}  // namespace

int main(int count, char** texts) {
  const int rounds = count > 1 ? std::atoi(texts[1]) : 1000;
  if (rounds < 1 || rounds > 100'000) {
    std::fputs("usage: desktop_rounds [ROUNDS], 1 to 100000\n", stderr);
    return 64;
  }
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(count, texts);
  QApplication::setQuitOnLastWindowClosed(false);
  DesktopPlant desktop;
  std::printf("%6s %12s %12s %16s\n", "round", "memory kB", "descriptors", "drawing objects");
  Holdings settled{}, now{};
  for (int round = 1; round <= rounds; ++round) {
    desktop.Round(100'000 + round);
    if (round != 1 && round != rounds && round % kSettled != 0) continue;
    now = desktop.Held();
    if (round <= kSettled) settled = now;
    std::printf("%6d %12ld %12zu %16zu\n", round, now.memory, now.descriptors, now.drawingObjects);
    std::fflush(stdout);
  }
  const bool grown = now.memory > settled.memory + kMostGrowth || now.descriptors > settled.descriptors ||
                     now.drawingObjects > settled.drawingObjects;
  std::printf("Aim: no growth after the first %d rounds: %s\n", kSettled, grown ? "missed" : "met");
  return grown ? 1 : 0;
}
