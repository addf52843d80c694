#pragma once

#include "core/table.h"
#include "platform/opc_control.h"

/// OPC controls of an installation without an OPC client: values are kept and go nowhere, and the status texts
/// say so.
class AbsentOpc : public OpcControls {
 public:
  OpcControl& Control(int ch) override { return controls_[ch]; }

 private:
  class AbsentControl : public OpcControl {
   public:
    void SetServerName(std::string_view) override {}
    void SetNodeName(std::string_view) override {}
    void SetUpdateRate(int) override {}
    void Connect() override {}
    void Disconnect() override {}
    std::string ConnectStatus() override { return "No OPC client installed"; }
    std::int32_t ConnectHandle() override { return 0; }
    void AddTag(std::int16_t, std::string_view) override {}
    void CreateGroup() override {}
    void DeleteGroup() override {}
    std::string GroupStatus() override { return "No OPC client installed"; }
    std::int32_t GroupHandle() override { return 0; }
    void SetValue(std::int16_t item, const OpcValue& value) override { values_[item] = value; }
    OpcValue Value(std::int16_t item) override { return values_[item]; }
    void Update() override {}

   private:
    Table<OpcValue, 8> values_;
  };

  Table<AbsentControl, 32> controls_;
};
