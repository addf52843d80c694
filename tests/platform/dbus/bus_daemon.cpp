#include "tests/platform/dbus/bus_daemon.h"

#include <sys/prctl.h>

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
  process_.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });  // a test that crashes leaves no bus
  process_.start("dbus-daemon", {"--nofork", "--nopidfile", "--print-address",
                                 QString::fromStdString("--config-file=" + configuration)});
  // The address is printed when clients can connect.
  if (!process_.waitForReadyRead(10'000)) throw std::runtime_error("dbus-daemon does not start");
}

void BusDaemon::Hang() { kill(static_cast<pid_t>(process_.processId()), SIGSTOP); }

void BusDaemon::GoOn() { kill(static_cast<pid_t>(process_.processId()), SIGCONT); }

void BusDaemon::Kill() {
  process_.kill();
  process_.waitForFinished();
}
