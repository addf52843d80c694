#include <langinfo.h>

#include <QCoreApplication>
#include <clocale>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <string>

#include "app/daemon.h"
#include "app/program.h"

namespace {

constexpr const char* kHelp =
    "Tarvex Manager without a window: reads the plant's scales and hands their weights on.\n"
    "\n"
    "Usage: tarvexd [WORD...]\n"
    "  NOMINIMIZE  for the desktop program: the window stays up\n"
    "  SPEECH      speak messages\n"
    "  UNPROTECT   for the desktop program: the fixed formats may be edited; no effect without a setup screen\n"
    "  DEBUG       count and show what helps to find a fault\n"
    "  NOGDI       no weigh screen\n"
    "  LOG         write the audit logs of all channels\n"
    "  --help, --version\n"
    "\n"
    "Environment:\n"
    "  TARVEX_HOME       folder of the .Cfg and log files; otherwise $XDG_DATA_HOME/tarvex\n"
    "  TARVEX_ROWS=1     print the rows once a second when standard output is no terminal\n"
    "  TARVEX_SUMMARY=1  print what was read and used at the end\n";

/// Texts are UTF-8 on every machine, also where no language is set up; numbers are never written by the locale.
void SetUpTexts() {
  std::setlocale(LC_ALL, "");
  if (std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0) setenv("LC_ALL", "C.UTF-8", 1);
}

int Run(int argc, char** argv) {
  qputenv("QT_NO_GLIB", "1");  // Qt's own loop is the lighter one
  SetUpTexts();
  std::signal(SIGPIPE, SIG_IGN);
  const QCoreApplication application(argc, argv);
  std::setlocale(LC_NUMERIC, "C");

  return Daemon(ReadyProgramFolder(), {IsSet("TARVEX_ROWS"), IsSet("TARVEX_SUMMARY")}).Run(CommandLine(argc, argv));
}

}  // namespace

int main(int argc, char** argv) { return RunProgram("tarvexd", kHelp, argc, argv, Run); }
