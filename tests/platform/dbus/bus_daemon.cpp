#include "tests/platform/dbus/bus_daemon.h"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace {

std::string Configuration(const std::string& address, const std::string& serviceFolder) {
  return "<busconfig><type>session</type><listen>" + address + "</listen><auth>EXTERNAL</auth>" +
         (serviceFolder.empty() ? "" : "<servicedir>" + serviceFolder + "</servicedir>") +
         "<policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/><allow eavesdrop=\"true\"/>"
         "<allow own=\"*\"/></policy></busconfig>";
}

}  // namespace

BusDaemon::BusDaemon() {
  std::string pattern = std::filesystem::temp_directory_path() / "tarvex-bus-XXXXXX";
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
  folder_ = pattern;
  setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + folder_ + "/bus").c_str(), 1);
}

BusDaemon::~BusDaemon() {
  Kill();
  std::filesystem::remove_all(folder_);
}

void BusDaemon::Start(const std::string& serviceFolder) {
  const std::string configuration = folder_ + "/bus.conf";
  std::filesystem::remove(folder_ + "/bus");
  std::ofstream(configuration) << Configuration("unix:path=" + folder_ + "/bus", serviceFolder);
  int ready[2];
  if (pipe(ready) != 0) throw std::runtime_error("no pipe");
  pid_ = fork();
  if (pid_ == 0) {
    close(ready[0]);
    prctl(PR_SET_PDEATHSIG, SIGKILL);  // a test that crashes leaves no bus behind
    const std::string printAddress = "--print-address=" + std::to_string(ready[1]);
    execlp("dbus-daemon", "dbus-daemon", "--nofork", "--nopidfile", ("--config-file=" + configuration).c_str(),
           printAddress.c_str(), nullptr);
    _exit(127);
  }
  close(ready[1]);
  char byte;
  const ssize_t got = read(ready[0], &byte, 1);  // the address is printed when clients can connect
  close(ready[0]);
  if (got != 1) throw std::runtime_error("dbus-daemon does not start");
}

void BusDaemon::Kill() {
  if (pid_ == 0) return;
  kill(pid_, SIGKILL);
  waitpid(pid_, nullptr, 0);
  pid_ = 0;
}
