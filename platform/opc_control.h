#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

/// Value of an OPC item; empty until one has arrived.
using OpcValue = std::variant<std::monostate, std::int16_t, double, std::string>;

/// The OPC client control of one channel, `OPC(ch)`. Values written are kept until the next `Update`; values
/// read are the last ones known from the server. The two status texts are only shown.
class OpcControl {
 public:
  virtual ~OpcControl() = default;
  virtual void SetServerName(std::string_view name) = 0;
  virtual void SetNodeName(std::string_view name) = 0;
  virtual void SetUpdateRate(int rate) = 0;
  virtual void Connect() = 0;
  virtual void Disconnect() = 0;
  virtual std::string ConnectStatus() = 0;
  virtual std::int32_t ConnectHandle() = 0;
  virtual void AddTag(std::int16_t item, std::string_view tag) = 0;
  virtual void CreateGroup() = 0;
  virtual void DeleteGroup() = 0;
  virtual std::string GroupStatus() = 0;
  virtual std::int32_t GroupHandle() = 0;
  virtual void SetValue(std::int16_t item, const OpcValue& value) = 0;
  virtual OpcValue Value(std::int16_t item) = 0;
  /// Exchanges the item values with the server.
  virtual void Update() = 0;
};

/// The control array `OPC(0..31)`.
class OpcControls {
 public:
  virtual ~OpcControls() = default;
  /// `ch` 0 to 31; raises 9 outside.
  virtual OpcControl& Control(int ch) = 0;
};
