#pragma once

#include <array>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/opc_control.h"

/// An OPC client whose server is its user. What the program writes becomes the server's value at the next exchange.
class MemoryOpcControl : public OpcControl {
 public:
  std::map<int, OpcValue> written;  ///< last value the program wrote to an item
  std::vector<std::string> calls;   ///< each operation of the connection, in order
  std::function<void()> onUpdate;   ///< runs at each exchange with the server, and may raise what that raises

  /// A value that comes from the server.
  void Arrive(int item, const OpcValue& value) { known_[item] = value; }

  void SetServerName(std::string_view) override {}
  void SetNodeName(std::string_view) override {}
  void SetUpdateRate(int) override {}
  void Connect() override { calls.emplace_back("connect"); }
  void Disconnect() override { calls.emplace_back("disconnect"); }
  std::string ConnectStatus() override { return "In memory"; }
  std::int32_t ConnectHandle() override { return 0; }
  void AddTag(std::int16_t, std::string_view) override {}
  void CreateGroup() override { calls.emplace_back("group"); }
  void DeleteGroup() override { calls.emplace_back("delete group"); }
  std::string GroupStatus() override { return "In memory"; }
  std::int32_t GroupHandle() override { return 0; }
  void SetValue(std::int16_t item, const OpcValue& value) override { staged_[item] = written[item] = value; }
  OpcValue Value(std::int16_t item) override { return known_[item]; }
  void Update() override {
    for (const auto& [item, value] : staged_) known_[item] = value;
    staged_.clear();
    if (onUpdate) onUpdate();
  }

 private:
  std::map<int, OpcValue> staged_;
  std::map<int, OpcValue> known_;
};

class MemoryOpc : public OpcControls {
 public:
  std::array<MemoryOpcControl, 32> control;

  OpcControl& Control(int ch) override { return control.at(static_cast<std::size_t>(ch)); }
};
