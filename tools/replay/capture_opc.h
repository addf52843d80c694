#pragma once

#include <functional>
#include <map>
#include <string>

#include "platform/opc_control.h"

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
