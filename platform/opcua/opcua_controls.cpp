#include "platform/opcua/opcua_controls.h"

#include <QCoreApplication>
#include <chrono>
#include <filesystem>
#include <utility>

namespace {

using nlohmann::json;

constexpr std::chrono::milliseconds kRetryHandOver{50};

std::string HelperFolder() {
  const QByteArray named = qgetenv("TARVEX_OPCUA");
  if (!named.isEmpty()) return named.toStdString();
  const std::string programs = QCoreApplication::applicationDirPath().toStdString();
  const std::string built = programs + "/opcua";
  return std::filesystem::is_directory(built) ? built : programs + "/../share/tarvex/opcua";
}

OpcValue ToOpcValue(const json& value) {
  if (value.is_number()) return value.get<double>();
  if (value.is_string()) return value.get<std::string>();
  return {};
}

}  // namespace

OpcUaControls::OpcUaControls(Hooks hooks) : OpcUaControls(std::move(hooks), HelperFolder()) {}

OpcUaControls::OpcUaControls(Hooks hooks, const std::string& helperFolder)
    : hooks_(std::move(hooks)),
      helper_(helperFolder, {.certificateFolder = [this] { return hooks_.certificateFolder(); },
                             .started = [this] { IntroduceAll(); },
                             .message = [this](const json& message) { TakeMessage(message); },
                             .lost = [this](const std::string& why) { LoseHelper(why); }}) {
  for (int ch = 0; ch < controls_.Size(); ++ch) controls_[ch].Use(*this, ch);
  handOver_.setSingleShot(true);
  QObject::connect(&handOver_, &QTimer::timeout, [this] { HandOverAll(); });
}

OpcServer OpcUaControls::ServerOf(const std::string& serverName, const std::string& nodeName) {
  return hooks_.serverOf(serverName, nodeName);
}

void OpcUaControls::MarkForHandOver() {
  if (!handOver_.isActive()) handOver_.start(0);
}

void OpcUaControls::HandOverAll() {
  if (!helper_.Running()) return;  // it is introduced to everything when it comes
  if (!helper_.TakesMore()) return handOver_.start(kRetryHandOver);
  json channels = json::array();
  for (int ch = 0; ch < controls_.Size(); ++ch) {
    json update = controls_[ch].TakeUpdate();
    if (!update.is_null()) channels.push_back(std::move(update));
  }
  if (!channels.empty()) helper_.Send({{"op", "update"}, {"channels", std::move(channels)}});
}

void OpcUaControls::HandOver(OpcUaControl& control) {
  if (!helper_.Running()) return;
  json update = control.TakeUpdate();
  if (!update.is_null()) helper_.Send({{"op", "update"}, {"channels", json::array({std::move(update)})}});
}

void OpcUaControls::IntroduceAll() {
  for (int ch = 0; ch < controls_.Size(); ++ch) {
    if (controls_[ch].InUse()) controls_[ch].Introduce();
  }
}

void OpcUaControls::TakeMessage(const json& message) {
  try {
    if (message.contains("values")) {
      const json& values = message.at("values");
      controls_[values.at(0).get<int>()].TakeCommandValues(
          values.at(1).get<std::int64_t>(),
          {ToOpcValue(values.at(2)), ToOpcValue(values.at(3)), ToOpcValue(values.at(4))});
      return;
    }
    const int ch = message.at("ch").get<int>();
    if (message.contains("log")) return Report(ch, message.at("log").get<std::string>());
    controls_[ch].TakeStatus(message.at("status").get<std::string>(), message.at("connected").get<bool>());
  } catch (const json::exception&) {
    // a message of another kind: what it is about shows in the state that stays as it was
  } catch (const RunTimeError&) {
    // a channel that there is not
  }
}

void OpcUaControls::LoseHelper(const std::string& why) {
  for (int ch = 0; ch < controls_.Size(); ++ch) controls_[ch].TakeStatus(why, false);
}
