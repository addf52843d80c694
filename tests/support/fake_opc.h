#pragma once

#include <string>
#include <vector>

#include "core/table.h"
#include "platform/opc_control.h"

/// One OPC control whose server is the test: `values` holds what is staged or has arrived, `calls` each operation
/// in the order of use, as text.
class FakeOpcControl : public OpcControl {
 public:
  Table<OpcValue, 8> values;
  std::vector<std::string> calls;
  int updateError = 0;  ///< number raised by each exchange, 0 for none

  void SetServerName(std::string_view name) override { Note("server ", name); }
  void SetNodeName(std::string_view name) override { Note("node ", name); }
  void SetUpdateRate(int rate) override { Note("rate ", std::to_string(rate)); }
  void Connect() override { Note("connect", ""); }
  void Disconnect() override { Note("disconnect", ""); }
  std::string ConnectStatus() override { return "Refused"; }
  std::int32_t ConnectHandle() override { return 7; }
  void AddTag(std::int16_t item, std::string_view tag) override { Note("tag " + std::to_string(item) + " ", tag); }
  void CreateGroup() override { Note("group", ""); }
  void DeleteGroup() override { Note("delete group", ""); }
  std::string GroupStatus() override { return "No Server"; }
  std::int32_t GroupHandle() override { return 9; }
  void SetValue(std::int16_t item, const OpcValue& value) override {
    values[item] = value;
    Note("write ", std::to_string(item));
  }
  OpcValue Value(std::int16_t item) override { return values[item]; }
  void Update() override {
    Note("update", "");
    if (updateError != 0) throw RunTimeError(updateError, "The OPC server is gone");
  }

 private:
  void Note(std::string what, std::string_view detail) { calls.push_back(what.append(detail)); }
};

class FakeOpc : public OpcControls {
 public:
  Table<FakeOpcControl, 32> control;
  OpcControl& Control(int ch) override { return control[ch]; }
};
