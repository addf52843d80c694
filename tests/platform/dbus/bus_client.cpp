#include "tests/platform/dbus/bus_client.h"

#include <QCoreApplication>
#include <QTimer>
#include <chrono>
#include <set>
#include <stdexcept>

namespace {

constexpr std::chrono::seconds kLimit{10};

std::set<BusClient*>& Clients() {
  static std::set<BusClient*> clients;
  return clients;
}

}  // namespace

bool Until(const std::function<bool()>& condition) {
  const auto end = std::chrono::steady_clock::now() + kLimit;
  QTimer beat;  // ends the wait for events, so that the clients have their turn too
  beat.start(1);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    bool worked = false;
    for (BusClient* client : Clients()) worked |= client->Work();
    QCoreApplication::processEvents(worked ? QEventLoop::AllEvents : QEventLoop::WaitForMoreEvents);
  }
  return true;
}

BusClient::BusClient() {
  if (sd_bus_open_user(&bus_) < 0) throw std::runtime_error("no bus for the client");
  Clients().insert(this);
}

BusClient::~BusClient() {
  Clients().erase(this);
  sd_bus_close_unref(bus_);
}

std::string BusClient::Text(const std::string& path, const char* property) {
  const Answer answer = Call(path, "org.freedesktop.DBus.Properties", "Get", "ss", InterfaceOf(path), property);
  const char* text = "";
  answer.Read("v", "s", &text);
  return text;
}

bool BusClient::SeesManager() { return Call("/", "org.freedesktop.DBus.Peer", "Ping").error.empty(); }

void BusClient::Listen() {
  const int result = sd_bus_add_match(bus_, nullptr, "type='signal',path_namespace='/org/tarvex'", Keep, this);
  if (result < 0) throw std::runtime_error("cannot listen");
}

void BusClient::StopReading() { Clients().erase(this); }

bool BusClient::Work() { return sd_bus_process(bus_, nullptr) > 0; }

const char* BusClient::InterfaceOf(std::string_view path) {
  return path.starts_with("/org/tarvex/dde/") ? "org.tarvex.Dde" : "org.tarvex.Device";
}

BusClient::Answer BusClient::Wait(const MessagePtr& call) {
  Answer answer{"no answer", nullptr};
  const auto take = [](sd_bus_message* message, void* target, sd_bus_error*) {
    auto& taken = *static_cast<Answer*>(target);
    const sd_bus_error* error = sd_bus_message_get_error(message);
    taken = {error != nullptr ? error->name : "", MessagePtr(sd_bus_message_ref(message), sd_bus_message_unref)};
    return 0;
  };
  sd_bus_slot* slot = nullptr;
  sd_bus_call_async(bus_, &slot, call.get(), take, &answer, 0);
  Until([&] { return answer.error != "no answer"; });
  sd_bus_slot_unref(slot);
  return answer;
}

int BusClient::Keep(sd_bus_message* signal, void* client, sd_bus_error*) {
  Heard heard{sd_bus_message_get_path(signal), sd_bus_message_get_member(signal)};
  if (heard.what == "PropertiesChanged") {
    heard.what.clear();
    const char* name = nullptr;
    sd_bus_message_skip(signal, "s");
    sd_bus_message_enter_container(signal, 'a', "{sv}");
    while (sd_bus_message_enter_container(signal, 'e', "sv") > 0) {
      sd_bus_message_read(signal, "s", &name);
      sd_bus_message_skip(signal, "v");
      sd_bus_message_exit_container(signal);
      heard.what += (heard.what.empty() ? "" : " ") + std::string(name);
    }
  }
  static_cast<BusClient*>(client)->signals_.push_back(std::move(heard));
  return 0;
}
