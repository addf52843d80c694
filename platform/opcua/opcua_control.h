#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "platform/opc_control.h"
#include "platform/opc_server.h"

class OpcUaLink;

/// The OPC client control of one channel, on a server that a helper speaks to. No operation waits: the status texts
/// tell how things stand, and their changes are reported when they come.
class OpcUaControl : public OpcControl {
 public:
  void Use(OpcUaLink& link, int ch);

  void SetServerName(std::string_view name) override { serverName_ = name; }
  void SetNodeName(std::string_view name) override { nodeName_ = name; }
  void SetUpdateRate(int) override {}  // an update is handed over at once
  void Connect() override;
  /// What has been handed over is still written.
  void Disconnect() override;
  std::string ConnectStatus() override { return connectStatus_; }
  std::int32_t ConnectHandle() override { return connectHandle_; }
  void AddTag(std::int16_t item, std::string_view tag) override;
  void CreateGroup() override;
  void DeleteGroup() override;
  std::string GroupStatus() override { return groupStatus_; }
  std::int32_t GroupHandle() override { return groupHandle_; }
  void SetValue(std::int16_t item, const OpcValue& value) override;
  OpcValue Value(std::int16_t item) override;
  void Update() override;

  /// A group stands on a server: the helper serves the channel when it runs.
  bool InUse() const { return server_.has_value() && groupStands_; }
  /// To a helper that knows nothing of this channel: its server, its tags and the values that are not sure to have
  /// arrived.
  void Introduce();
  /// The values to hand over; null if there are none.
  nlohmann::json TakeUpdate();
  /// The state has changed: `text` is told once. Without a connection nothing is known of the server's values.
  void TakeStatus(const std::string& text, bool connected);
  /// What the server held behind update `seq`, for the three command items.
  void TakeCommandValues(std::int64_t seq, const std::array<OpcValue, 3>& values);

 private:
  static constexpr int kItems = 8;
  static constexpr int kFirstCommandItem = 4;

  struct Held {
    OpcValue value;
    std::int64_t milliseconds = 0;  ///< of the wall clock, when the value was set
    bool staged = false;            ///< since the last `Update`
    bool toHandOver = false;
  };

  OpcUaLink* link_ = nullptr;
  int ch_ = 0;
  std::string serverName_, nodeName_;
  std::optional<OpcServer> server_;
  std::map<int, std::string> tags_;
  bool groupStands_ = false;
  std::string connectStatus_ = "Not connected", groupStatus_ = "No group";
  std::int32_t connectHandle_ = 0, groupHandle_ = 0;
  std::array<Held, kItems> held_;
  std::array<OpcValue, kItems> known_;
  std::int64_t seq_ = 0;         ///< updates handed over
  std::int64_t commandSeq_ = 0;  ///< the last of them that wrote a command item
  bool commandUnsure_ = false;   ///< it is not known to have arrived
  bool updateAsked_ = false;
  bool readsCommands_ = false;
};
