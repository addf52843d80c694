#include "app/daemon.h"

#include <unistd.h>

#include <QCoreApplication>
#include <QSysInfo>
#include <stdexcept>

#include "app/opc_hooks.h"
#include "app/setup_calls.h"
#include "core/error_trap.h"
#include "core/gdi_timer.h"
#include "core/scan_engine.h"
#include "core/shutdown.h"
#include "core/startup.h"
#include "core/transmission.h"
#include "platform/qt/termination.h"

Daemon::Daemon(const std::string& programFolder, const DaemonOptions& options)
    : options_(options),
      system_(programFolder),
      ports_([this](int number) { return addresses_.AddressOf(number); }),
      notice_(system_, STDERR_FILENO),
      opc_(OpcHooksOf([this]() -> Engine& { return manager_.Parts(); }, files_)),
      terminals_([this] { return manager_.Store().ProgramFolder; }, [this](const std::string& why) { LogFault(why); }),
      manager_(
          {system_, events_, ports_, files_, notice_, opc_, terminals_, databases_, startupForm_, mainForm_, dialogs_},
          programFolder),
      bus_(manager_.Publishing(), [this](const std::string& text) { notice_.Write(text); }),
      standardOutput_(STDOUT_FILENO) {
  startupForm_.Attach(manager_.Parts());
  mainForm_.Attach(manager_.Parts());
}

int Daemon::Run(std::string_view commandLine) {
  Engine& engine = manager_.Parts();
  if (!Main(engine, commandLine)) return 1;

  const Termination termination([] { QCoreApplication::quit(); });
  ReportFault(engine, [&] { addresses_.Load(files_, engine.tables.ProgramFolder); });
  OpenScreen();
  if (engine.tables.SpeechEnabled == True) StartSpeech();
  ConnectTimers();
  LoadStartupForm(engine);
  bus_.OfferSetup(SetupCallsOf(engine));
  bus_.Start();
  QCoreApplication::exec();
  const std::string summary = summary_.Text(engine.tables);
  ShutDown();
  if (options_.summary) standardOutput_.Write(summary + "\n");
  return 0;
}

void Daemon::LogFault(const std::string& why) {
  Engine& engine = manager_.Parts();
  ReportFault(engine, [&] { engine.log.WriteLog(LogType::Error, why); });
}

void Daemon::StartSpeech() {
  // The speech thread tells of its faults; they are written on this one.
  speech_ = std::make_unique<Speech>(
      [this](const std::string& why) { RunInMessageLoop([this, why] { notice_.Write(why); }); });
  speech_->Start();
  notice_.SpeakWith([this](std::string_view sentence) { speech_->Speak(sentence); });
}

void Daemon::OpenScreen() {
  Tables& tables = manager_.Store();
  if (tables.GdiEnabled == False) return;
  if (!CursesTerminal::IsThere()) {
    if (options_.rows) rows_.emplace(tables, system_);
    return;
  }
  try {
    terminal_ = std::make_unique<CursesTerminal>();
  } catch (const std::runtime_error& fault) {
    notice_.Write(std::string("No weigh screen: ") + fault.what());
    return;
  }
  screen_ = std::make_unique<TextScreen>(tables, system_, *terminal_, QSysInfo::machineHostName().toStdString(),
                                         [] { QCoreApplication::quit(); });
  mainForm_.SetScreen(screen_.get());
  notice_.ScreenStands([this](std::string_view text) { screen_->ShowMessage(text); });
}

void Daemon::CloseScreen() {
  mainForm_.SetScreen(nullptr);
  screen_.reset();
  terminal_.reset();
  notice_.ScreenGone();
}

void Daemon::ConnectTimers() {
  events_.Timer1().OnTick([this] { Timer1Tick(manager_.Parts()); });
  events_.TxTimer().OnTick([this] { TxTimerTick(manager_.Parts()); });
  events_.GDITimer().OnTick([this] { ShowTick(); });
}

void Daemon::ShowTick() {
  if (screen_) screen_->Serve();
  GDITimerTick(manager_.Parts());
  if (screen_) screen_->Flush();
  if (rows_) {
    const std::string lines = rows_->Lines();
    if (!lines.empty()) standardOutput_.Write(lines);
  }
}

void Daemon::ShutDown() {
  Engine& engine = manager_.Parts();
  CloseTXMWindow(engine);
  Unload_Tarvex_MainForm(engine);
  TaskCtrl(engine, kEndTask);
  bus_.Stop();
  CloseScreen();
}
