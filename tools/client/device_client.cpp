#include "tools/client/device_client.h"

#include <cstring>
#include <string_view>
#include <utility>
#include <variant>

namespace {

constexpr const char* kManager = "org.tarvex.Manager";
constexpr const char* kDevice = "org.tarvex.Device";
constexpr const char* kProperties = "org.freedesktop.DBus.Properties";

using Member = std::variant<std::int32_t DeviceState::*, std::int16_t DeviceState::*, double DeviceState::*,
                            std::string DeviceState::*>;

struct Field {
  std::string_view property;
  Member member;
};

const Field kFields[] = {
    {"CDeviceDesc", &DeviceState::description},
    {"CDeviceID", &DeviceState::id},
    {"CCmd", &DeviceState::command},
    {"CCmdParm", &DeviceState::parameter},
    {"CCmdStat", &DeviceState::answer},
    {"CGross", &DeviceState::gross},
    {"CTare", &DeviceState::tare},
    {"CNet", &DeviceState::net},
    {"CScaleStat", &DeviceState::status},
};

int ReadValue(sd_bus_message* message, std::int32_t& value) { return sd_bus_message_read(message, "v", "i", &value); }
int ReadValue(sd_bus_message* message, std::int16_t& value) { return sd_bus_message_read(message, "v", "n", &value); }
int ReadValue(sd_bus_message* message, double& value) { return sd_bus_message_read(message, "v", "d", &value); }
int ReadValue(sd_bus_message* message, std::string& value) {
  const char* text = nullptr;
  const int result = sd_bus_message_read(message, "v", "s", &text);
  if (result > 0) value = text;
  return result;
}

[[noreturn]] void Raise(int error) {
  throw NoManager(std::string("The session bus cannot be reached: ") + std::strerror(-error) +
                  ". Give its address in DBUS_SESSION_BUS_ADDRESS.");
}

int Checked(int result) {
  if (result < 0) Raise(result);
  return result;
}

}  // namespace

DeviceClient::DeviceClient(int channel) : path_("/org/tarvex/Device/" + std::to_string(channel - 1)) {
  sd_bus* bus = nullptr;
  Checked(sd_bus_open_user(&bus));
  bus_.reset(bus);
  Match("type='signal',sender='org.tarvex.Manager',path='" + path_ + "'");
  Match("type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged',arg0='org.tarvex.Manager'");
}

void DeviceClient::Match(const std::string& rule) {
  Checked(sd_bus_call_method(bus_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                             "AddMatch", nullptr, nullptr, "s", rule.c_str()));
}

DeviceClient::Message DeviceClient::Call(const char* interface, const char* member) const {
  sd_bus_message* call = nullptr;
  Checked(sd_bus_message_new_method_call(bus_.get(), &call, kManager, path_.c_str(), interface, member));
  return Message(call);
}

template <typename Value>
void DeviceClient::Set(const char* property, const char* type, Value value) {
  const Message call = Call(kProperties, "Set");
  Checked(sd_bus_message_append(call.get(), "ssv", kDevice, property, type, value));
  Checked(sd_bus_message_set_expect_reply(call.get(), 0));
  Checked(sd_bus_send(bus_.get(), call.get(), nullptr));
}

DeviceClient::Message DeviceClient::Answer(const Message& call) {
  sd_bus_error error = SD_BUS_ERROR_NULL;
  sd_bus_message* answer = nullptr;
  const int result = sd_bus_call(bus_.get(), call.get(), 0, &error, &answer);
  if (result < 0) {
    const std::string reason = error.message != nullptr ? error.message : std::strerror(-result);
    sd_bus_error_free(&error);
    throw NoManager("The manager does not answer: " + reason + " Is it running, and on this session bus?");
  }
  return Message(answer);
}

void DeviceClient::Read() {
  const Message call = Call(kProperties, "GetAll");
  Checked(sd_bus_message_append(call.get(), "s", kDevice));
  Take(Answer(call).get());
}

void DeviceClient::Command(std::int16_t code, double parameter) {
  Set("CCmd", "n", code);
  Set("CCmdParm", "d", parameter);
  Set("CCmdStat", "n", 0);
  Answer(Call(kDevice, "CDoUpdate"));
}

std::optional<DeviceNews> DeviceClient::Wait(Clock::time_point end) {
  for (;;) {
    sd_bus_message* received = nullptr;
    const int worked = Checked(sd_bus_process(bus_.get(), &received));
    const Message message(received);
    if (message) {
      if (auto news = Understand(received)) return news;
    }
    if (worked > 0) continue;
    const auto left = std::chrono::duration_cast<std::chrono::microseconds>(end - Clock::now());
    if (left.count() <= 0) return std::nullopt;
    Checked(sd_bus_wait(bus_.get(), static_cast<std::uint64_t>(left.count())));
  }
}

std::optional<DeviceNews> DeviceClient::Understand(sd_bus_message* signal) {
  using Kind = DeviceNews::Kind;
  if (sd_bus_message_is_signal(signal, kDevice, "CUpdate") > 0) return DeviceNews{Kind::Update, {}};
  if (sd_bus_message_is_signal(signal, kProperties, "PropertiesChanged") > 0) {
    Checked(sd_bus_message_skip(signal, "s"));
    return DeviceNews{Kind::Fields, Take(signal)};
  }
  const char *name = nullptr, *before = nullptr, *now = nullptr;
  if (sd_bus_message_is_signal(signal, "org.freedesktop.DBus", "NameOwnerChanged") > 0) {
    Checked(sd_bus_message_read(signal, "sss", &name, &before, &now));
    return DeviceNews{*now == '\0' ? Kind::ManagerLeft : Kind::ManagerCame, {}};
  }
  return std::nullopt;
}

std::vector<std::string> DeviceClient::Take(sd_bus_message* properties) {
  std::vector<std::string> names;
  Checked(sd_bus_message_enter_container(properties, 'a', "{sv}"));
  while (Checked(sd_bus_message_enter_container(properties, 'e', "sv")) > 0) {
    const char* name = nullptr;
    Checked(sd_bus_message_read(properties, "s", &name));
    bool known = false;
    for (const Field& field : kFields) {
      if (field.property != name) continue;
      known = true;
      std::visit([&](auto member) { Checked(ReadValue(properties, state_.*member)); }, field.member);
    }
    if (known) {
      names.emplace_back(name);
    } else {
      Checked(sd_bus_message_skip(properties, "v"));
    }
    Checked(sd_bus_message_exit_container(properties));
  }
  Checked(sd_bus_message_exit_container(properties));
  return names;
}
