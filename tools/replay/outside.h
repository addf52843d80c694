#pragma once

#include <array>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "app/headless_forms.h"
#include "platform/event_loop.h"
#include "platform/opc_control.h"
#include "platform/operator_notice.h"
#include "platform/serial_ports.h"
#include "platform/system.h"

/// A machine on which time stands still: the replay alone decides when a tick comes.
class StillSystem : public System {
 public:
  OsVersion GetVersionEx() const override { return {2, 5, 0}; }
  int GetSystemMetrics(int index) const override { return index == 0 ? 1024 : 768; }
  bool PreviousInstance() override { return false; }
  std::int64_t WallSeconds() const override { return 0; }
  std::string DateTimeText() const override { return {}; }
  void Sleep(int) override {}
};

class HandDrivenEvents : public EventLoop {
 public:
  void DoEvents() override {}
  PeriodicTimer& Timer1() override { return timers_[0]; }
  PeriodicTimer& TxTimer() override { return timers_[1]; }
  PeriodicTimer& GDITimer() override { return timers_[2]; }

 private:
  class Timer : public PeriodicTimer {
   public:
    void SetInterval(int milliseconds) override { interval_ = milliseconds; }
    int Interval() const override { return interval_; }
    void SetEnabled(bool) override {}

   private:
    int interval_ = 1;
  };
  std::array<Timer, 3> timers_;
};

/// A port at whose far end stands the capture. It opens whatever its number and settings are.
class CapturePort : public SerialPort {
 public:
  std::string waiting;            ///< bytes that have arrived
  std::vector<std::string> sent;  ///< texts written, one a write

  bool PortOpen() const override { return open_; }
  void Open() override { open_ = true; }
  void Close() override { open_ = false; }
  int CommPort() const override { return commPort_; }
  void SetCommPort(int number) override { commPort_ = number; }
  const std::string& Settings() const override { return settings_; }
  void SetSettings(std::string_view settings) override { settings_ = settings; }
  int Handshaking() const override { return handshaking_; }
  void SetHandshaking(int mode) override { handshaking_ = mode; }
  std::size_t InBufferCount() override { return waiting.size(); }
  void Input(std::string& chunk) override {
    chunk = waiting;
    waiting.clear();
  }
  void Output(std::string_view data) override { sent.emplace_back(data); }

 private:
  bool open_ = false;
  int commPort_ = 0;
  int handshaking_ = 0;
  std::string settings_;
};

/// The one port of a replay, whatever channel asks for it.
class CapturePorts : public SerialPorts {
 public:
  CapturePort port;
  SerialPort& Port(int) override { return port; }
  void Poll() override {}
};

/// An OPC client whose server is the capture. What the program writes becomes the server's value at the next
/// exchange.
class CaptureOpc : public OpcControls, private OpcControl {
 public:
  std::map<int, OpcValue> written;  ///< last value the program wrote to an item
  std::function<void()> onUpdate;   ///< runs at each exchange with the server

  OpcControl& Control(int) override { return *this; }
  /// A value that comes from the server.
  void Arrive(int item, const OpcValue& value) { known_[item] = value; }

 private:
  void SetServerName(std::string_view) override {}
  void SetNodeName(std::string_view) override {}
  void SetUpdateRate(int) override {}
  void Connect() override {}
  void Disconnect() override {}
  std::string ConnectStatus() override { return "Replay"; }
  std::int32_t ConnectHandle() override { return 0; }
  void AddTag(std::int16_t, std::string_view) override {}
  void CreateGroup() override {}
  void DeleteGroup() override {}
  std::string GroupStatus() override { return "Replay"; }
  std::int32_t GroupHandle() override { return 0; }
  void SetValue(std::int16_t item, const OpcValue& value) override { staged_[item] = written[item] = value; }
  OpcValue Value(std::int16_t item) override { return known_[item]; }
  void Update() override {
    for (const auto& [item, value] : staged_) known_[item] = value;
    staged_.clear();
    if (onUpdate) onUpdate();
  }

  std::map<int, OpcValue> staged_;
  std::map<int, OpcValue> known_;
};
