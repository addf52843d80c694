#include <QApplication>
#include <clocale>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>

#include "app/desktop.h"
#include "app/shipped_formats.h"
#include "core/startup.h"
#include "platform/posix/program_folder.h"

namespace {

constexpr const char* kHelp =
    "Tarvex Manager: reads the plant's scales, shows them and hands their weights on.\n"
    "\n"
    "Usage: tarvex [WORD...]\n"
    "  NOMINIMIZE  the window stays up after the first scan\n"
    "  SPEECH      speak messages\n"
    "  UNPROTECT   the fixed formats may be edited\n"
    "  DEBUG       count and show what helps to find a fault; the window does not go to the tray\n"
    "  NOGDI       no drawn rows\n"
    "  LOG         write the audit logs of all channels\n"
    "  --help, --version\n"
    "\n"
    "Environment:\n"
    "  TARVEX_HOME       folder of the .Cfg and log files; otherwise $XDG_DATA_HOME/tarvex\n"
    "  TARVEX_SUMMARY=1  print what was read and used when a signal ends the program\n";

std::string CommandLine(int argc, char** argv) {
  std::string line;
  for (int index = 1; index < argc; ++index) line += (index > 1 ? " " : "") + std::string(argv[index]);
  return line;
}

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
  QApplication::setQuitOnLastWindowClosed(false);
  std::setlocale(LC_NUMERIC, "C");

  const std::string folder = ProgramFolder();
  PrepareProgramFolder(folder, ShippedFormats());
  return Desktop(folder, qgetenv("TARVEX_SUMMARY") == "1").Run(words);
}

}  // namespace

int main(int argc, char** argv) {
  const std::string first = argc > 1 ? argv[1] : "";
  if (first == "--help") return (std::cout << kHelp).good() ? 0 : 1;
  if (first == "--version") return (std::cout << "tarvex " << RevisionText() << "\n").good() ? 0 : 1;
  try {
    return Run(argc, argv);
  } catch (const std::exception& fault) {
    std::cerr << "tarvex: " << fault.what() << "\n";
    return 1;
  }
}
