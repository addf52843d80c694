#include <QApplication>
#include <clocale>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <string>

#include "app/desktop.h"
#include "app/program.h"
#include "ui/program_style.h"

namespace {

constexpr const char* kHelp =
    "Tarvex Manager: reads the plant's scales, shows them and hands their weights on.\n"
    "\n"
    "Usage: tarvex [WORD...]\n"
    "  NOMINIMIZE  the window stays up after the first scan\n"
    "  SPEECH      speak messages\n"
    "  UNPROTECT   the fixed formats may be edited; no effect without a setup screen\n"
    "  DEBUG       count and show what helps to find a fault; the window does not go to the tray\n"
    "  NOGDI       no drawn rows\n"
    "  LOG         write the audit logs of all channels\n"
    "  --help, --version\n"
    "\n"
    "Environment:\n"
    "  TARVEX_HOME       folder of the .Cfg and log files; otherwise $XDG_DATA_HOME/tarvex\n"
    "  TARVEX_SCALE=1    windows as they are on a display of 1024 x 768; without it they\n"
    "                    are enlarged to fill a larger one. Up to 8, in eighths\n"
    "  TARVEX_SUMMARY=1  print what was read and used when a signal ends the program\n";

/// Qt aborts where it finds no display; a person is told instead.
void TellOfMissingDisplay(QtMsgType type, const QMessageLogContext&, const QString&) {
  if (type != QtFatalMsg) return;
  std::cerr << "tarvex: There is no display to open a window on. tarvexd is the same system without a window.\n";
  std::_Exit(1);
}

int Run(int argc, char** argv) {
  const std::string words = CommandLine(argc, argv);
  std::signal(SIGPIPE, SIG_IGN);
  qInstallMessageHandler(TellOfMissingDisplay);
  const QApplication application(argc, argv);
  qInstallMessageHandler(nullptr);
  StyleApplication();
  QApplication::setQuitOnLastWindowClosed(false);
  std::setlocale(LC_NUMERIC, "C");

  return Desktop(ReadyProgramFolder(), IsSet("TARVEX_SUMMARY")).Run(words);
}

}  // namespace

int main(int argc, char** argv) { return RunProgram("tarvex", kHelp, argc, argv, Run); }
