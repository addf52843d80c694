#include "platform/opcua/opcua_control.h"

#include <chrono>

#include "platform/opcua/opcua_controls.h"
#include "platform/qt/text.h"
#include "platform/run_time_error.h"

namespace {

using nlohmann::json;

std::int64_t WallMilliseconds() {
  using namespace std::chrono;
  return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

/// The system's bytes as UTF-8.
std::string Utf8(const std::string& bytes) { return ToBytes(ToText(bytes)); }

json ToJson(const OpcValue& value) {
  if (const auto* number = std::get_if<double>(&value)) return *number;
  if (const auto* number = std::get_if<std::int16_t>(&value)) return *number;
  if (const auto* text = std::get_if<std::string>(&value)) return Utf8(*text);
  return nullptr;
}

}  // namespace

void OpcUaControl::Use(OpcUaLink& link, int ch) {
  link_ = &link;
  ch_ = ch;
}

void OpcUaControl::Connect() {
  ++connectHandle_;
  tags_.clear();
  try {
    server_ = link_->ServerOf(serverName_, nodeName_);
    connectStatus_ = "Connecting to " + server_->endpoint;
  } catch (const RunTimeError& fault) {
    server_.reset();
    connectStatus_ = fault.Description();
  }
}

void OpcUaControl::Disconnect() {
  if (server_) link_->Send({{"op", "disconnect"}, {"ch", ch_}});
  server_.reset();
  held_ = {};
  commandUnsure_ = updateAsked_ = readsCommands_ = false;
  connectStatus_ = "Disconnected";
}

void OpcUaControl::AddTag(std::int16_t item, std::string_view tag) {
  if (item >= 0 && item < kItems) tags_[item] = tag;
}

void OpcUaControl::CreateGroup() {
  ++groupHandle_;
  groupStands_ = true;
  known_ = {};
  groupStatus_ = std::to_string(tags_.size()) + " tags to look for";
  if (!server_) return;
  link_->NeedHelper();
  Introduce();
}

void OpcUaControl::DeleteGroup() {
  link_->HandOver(*this);
  groupStands_ = false;
  known_ = {};
  groupStatus_ = "Deleted";
}

void OpcUaControl::Introduce() {
  json tags = json::object();
  for (const auto& [item, tag] : tags_) tags[std::to_string(item)] = Utf8(tag);
  link_->Send({{"op", "connect"},
               {"ch", ch_},
               {"server",
                {{"endpoint", Utf8(server_->endpoint)},
                 {"mode", server_->mode},
                 {"policy", server_->policy},
                 {"user", Utf8(server_->user)},
                 {"password", Utf8(server_->password)}}},
               {"tags", tags}});
  for (int item = 0; item < kItems; ++item) {
    Held& held = held_[static_cast<std::size_t>(item)];
    const bool unsure = item < kFirstCommandItem || commandUnsure_;
    if (held.milliseconds != 0 && !held.staged && unsure) held.toHandOver = true;
  }
  updateAsked_ = true;
  link_->MarkForHandOver();
}

void OpcUaControl::SetValue(std::int16_t item, const OpcValue& value) {
  if (item < 0 || item >= kItems) return;
  Held& held = held_[static_cast<std::size_t>(item)];
  held = {value, WallMilliseconds(), true, held.toHandOver};
}

OpcValue OpcUaControl::Value(std::int16_t item) {
  if (item >= kFirstCommandItem) readsCommands_ = true;
  return item >= 0 && item < kItems ? known_[static_cast<std::size_t>(item)] : OpcValue{};
}

void OpcUaControl::Update() {
  if (!InUse()) return;
  ++seq_;
  for (int item = 0; item < kItems; ++item) {
    Held& held = held_[static_cast<std::size_t>(item)];
    if (!held.staged) continue;
    held.staged = false;
    held.toHandOver = true;
    known_[static_cast<std::size_t>(item)] = held.value;
    if (item < kFirstCommandItem) continue;
    commandSeq_ = seq_;
    commandUnsure_ = true;
  }
  updateAsked_ = true;
  link_->MarkForHandOver();
}

json OpcUaControl::TakeUpdate() {
  if (!updateAsked_ || !InUse()) return nullptr;
  updateAsked_ = false;
  json items = json::array();
  for (int item = 0; item < kItems; ++item) {
    Held& held = held_[static_cast<std::size_t>(item)];
    if (!held.toHandOver) continue;
    held.toHandOver = false;
    if (tags_.contains(item)) items.push_back({item, ToJson(held.value), held.milliseconds});
  }
  return {{"ch", ch_}, {"seq", seq_}, {"read", readsCommands_}, {"items", std::move(items)}};
}

void OpcUaControl::TakeStatus(const std::string& text, bool connected) {
  if (!InUse()) return;
  if (!connected) {
    for (std::size_t item = kFirstCommandItem; item < kItems; ++item) known_[item] = {};
  }
  if (text == connectStatus_) return;
  connectStatus_ = text;
  link_->Report(ch_, "Status: " + text);
}

void OpcUaControl::TakeCommandValues(std::int64_t seq, const std::array<OpcValue, 3>& values) {
  if (!InUse() || seq < commandSeq_) return;  // read before the last write
  commandUnsure_ = false;
  for (std::size_t at = 0; at < values.size(); ++at) known_[kFirstCommandItem + at] = values[at];
}
