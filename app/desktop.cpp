#include "app/desktop.h"

#include <QApplication>
#include <QScreen>
#include <iostream>
#include <utility>

#include "app/opc_hooks.h"
#include "app/setup_calls.h"
#include "core/error_trap.h"
#include "core/fixed_tables.h"
#include "core/gdi_timer.h"
#include "core/scan_engine.h"
#include "core/shutdown.h"
#include "core/startup.h"
#include "core/transmission.h"
#include "platform/qt/display_loss.h"
#include "platform/qt/termination.h"

namespace {

DisplaySize SizeOfDisplay() {
  const QSize size = QGuiApplication::primaryScreen()->size();
  return {size.width(), size.height()};
}

}  // namespace

Desktop::Desktop(const std::string& programFolder, bool summary)
    : system_(programFolder, SizeOfDisplay()),
      ports_([this](int number) { return addresses_.AddressOf(number); }),
      speech_([this](const std::string& why) { RunInMessageLoop([this, why] { LogFault(why); }); }),
      notice_(boxes_, speech_),
      opc_(OpcHooksOf([this]() -> Engine& { return manager_.Parts(); }, files_)),
      terminals_([this] { return manager_.Store().ProgramFolder; }, [this](const std::string& why) { LogFault(why); }),
      manager_(
          {system_, events_, ports_, files_, notice_, opc_, terminals_, databases_, startupForm_, mainForm_, dialogs_},
          programFolder),
      setup_(manager_.Parts(), manager_.Setup(), setupForm_),
      bus_(manager_.Publishing(), [this](const std::string& text) { Tell(text); }),
      printSummary_(summary) {
  Engine& engine = manager_.Parts();
  dialogs_.Use(engine, manager_.Terminal());
  startupForm_.Use(engine, [this] { End(); });
  mainForm_.Use(engine, dialogs_);
  mainForm_.OnSetup([this](int ch) { setup_.Open(ch); });
  setupForm_.Use({manager_.Setup(), setup_, [this](int comNumber) { return DescribePort(comNumber); }});
  setupForm_.SetOwner(&mainForm_);
}

int Desktop::Run(std::string_view commandLine) {
  Engine& engine = manager_.Parts();
  if (!Main(engine, commandLine)) return 1;
  const Termination termination([this, &engine] {
    if (std::exchange(printSummary_, false)) std::cout << summary_.Text(engine.tables) << std::endl;
    endedBySignal_ = true;
    CloseTXMWindow(engine);
    TaskCtrl(engine, kEndTask);
  });
  const DisplayLoss displayLoss([this] { EndWithoutDisplay(); });
  RunInMessageLoop([this] { Start(); });  // what ends the program ends a loop that runs
  QCoreApplication::exec();
  bus_.Stop();
  return 0;
}

void Desktop::Start() {
  Engine& engine = manager_.Parts();
  ReportFault(engine, [&] { addresses_.Load(files_, engine.tables.ProgramFolder); });
  if (engine.tables.SpeechEnabled == True) speech_.Start();
  ConnectTimers();
  bus_.OfferSetup(SetupCallsOf(engine));
  bus_.Start();
  LoadStartupForm(engine);
}

void Desktop::ConnectTimers() {
  events_.Timer1().OnTick([this] { Timer1Tick(manager_.Parts()); });
  events_.TxTimer().OnTick([this] { TxTimerTick(manager_.Parts()); });
  events_.GDITimer().OnTick([this] { GDITimerTick(manager_.Parts()); });
}

/// The device behind a COM number, and what stands in the way of the channel that is edited.
std::string Desktop::DescribePort(int comNumber) {
  try {
    const std::string address = addresses_.AddressOf(comNumber);
    for (int ch = 0; ch <= manager_.Store().MaxChannel; ++ch) {
      const SerialPort& port = ports_.Port(ch);
      if (ch == manager_.Setup().Channel() || !port.PortOpen() || port.CommPort() != comNumber) continue;
      return "in use by channel " + DisplayNumber(ch) + ": " + address;
    }
    const PortStanding standing = portProbe_.LookAt(address);
    const std::string hindrance = standing.ours ? "" : PortStandingText(standing);  // ours: the edited channel's own
    return hindrance.empty() ? address : hindrance + ": " + address;  // the place is narrow: what matters first
  } catch (const RunTimeError& fault) {
    return fault.Description();
  }
}

void Desktop::LogFault(const std::string& why) {
  Engine& engine = manager_.Parts();
  ReportFault(engine, [&] { engine.log.WriteLog(LogType::Error, why); });
}

/// What no window is made for: the program that was started from a terminal says it there.
void Desktop::Tell(const std::string& text) { std::cerr << system_.DateTimeText() << "  " << text << "\n"; }

/// Unloading the forms: the main form releases what it holds, and the message loop ends.
void Desktop::End() {
  boxes_.DismissAll();
  dialogs_.Unload();
  setupForm_.Hide();
  mainForm_.Unload();
  if (!endedBySignal_) boxes_.ShowLast();
  QCoreApplication::quit();
}

void Desktop::EndWithoutDisplay() {
  Engine& engine = manager_.Parts();
  try {
    engine.log.WriteLog(LogType::Error, "Display Lost, Tarvex Manager Ends");
  } catch (const RunTimeError&) {
    // the links are closed all the same
  }
  CloseLinks(engine);
  Unload_Tarvex_MainForm(engine);
}
