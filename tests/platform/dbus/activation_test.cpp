#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QProcess>
#include <csignal>
#include <cstdlib>

#include "tests/platform/dbus/bus_client.h"
#include "tests/platform/dbus/bus_daemon.h"

namespace {

/// Process behind the manager's name, 0 if there is none.
pid_t ManagerProcess(BusClient& client) {
  std::uint32_t pid = 0;
  sd_bus_message* answer = nullptr;
  sd_bus_call_method(client.Bus(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                     "GetConnectionUnixProcessID", nullptr, &answer, "s", "org.tarvex.Manager");
  if (answer != nullptr) sd_bus_message_read(answer, "u", &pid);
  sd_bus_message_unref(answer);
  return static_cast<pid_t>(pid);
}

TEST(BusActivation, TheFirstCallOfAClientStartsTheInstalledManagerEachTimeItIsNotThere) {
  int count = 1;
  char name[] = "test";
  char* words[] = {name, nullptr};
  const QCoreApplication application(count, words);
  BusDaemon daemon;
  const std::string prefix = daemon.Folder() + "/installed here";
  setenv("TARVEX_HOME", (daemon.Folder() + "/home").c_str(), 1);
  ASSERT_EQ(QProcess::execute("cmake", {"--install", TARVEX_BUILD, "--component", "manager", "--prefix",
                                        QString::fromStdString(prefix)}),
            0);
  daemon.Start(prefix + "/share/dbus-1/services");
  BusClient client;
  for (int start = 1; start <= 2; ++start) {
    EXPECT_EQ(ManagerProcess(client), 0);
    const auto answer = client.Call("/org/tarvex/Connector", "org.tarvex.Connector", "Device", "n", 3);
    const char* path = "";
    answer.Read("o", &path);
    EXPECT_STREQ(path, "/org/tarvex/Device/3");
    const pid_t manager = ManagerProcess(client);
    ASSERT_NE(manager, 0);
    kill(manager, SIGTERM);
    ASSERT_TRUE(Until([&] { return ManagerProcess(client) == 0 && kill(manager, 0) != 0; }));
  }
}

}  // namespace
