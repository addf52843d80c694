#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <string>
#include <vector>

#include "platform/dbus/bus_adapter.h"
#include "tests/platform/dbus/bus_client.h"
#include "tests/platform/dbus/bus_daemon.h"
#include "tests/support/test_plant.h"

/// The system on a bus of its own: one scale at channel 0 whose streams are seven characters of gross weight and
/// a CR, and which knows one command, code 3. The test turns the ticks.
class BusTest : public ::testing::Test {
 protected:
  static constexpr int kProtocol = 10;
  static constexpr const char* kScale = "/org/tarvex/Device/0";
  static constexpr const char* kSpare = "/org/tarvex/Device/32";
  static constexpr const char* kTopic = "/org/tarvex/dde/DDEForm0";

  BusTest();

  /// The bus runs and the system is on it.
  void StartOnBus();
  /// Does what a client does for a command, up to and including `CDoUpdate`.
  static void SendCommand(BusClient& client, int code, double parameter);
  /// The signals heard by the time an own signal has come back behind them.
  static std::vector<BusClient::Heard> Heard(BusClient& client);

  int argc_ = 1;
  char name_[5] = "test";
  char* argv_[2] = {name_, nullptr};
  QCoreApplication application_{argc_, argv_};
  BusDaemon daemon_;
  TestPlant plant_;
  std::vector<std::string> log_;
  BusAdapter adapter_{plant_.manager.Publishing(), [this](const std::string& line) { log_.push_back(line); }};
};
