#pragma once

#include <systemd/sd-bus.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// Runs the event loop of the program under test and all clients until `condition` holds. False after ten seconds.
bool Until(const std::function<bool()>& condition);

/// Another program on the bus. Its calls wait for their answers while the program under test goes on running.
class BusClient {
 public:
  BusClient();
  ~BusClient();
  BusClient(const BusClient&) = delete;
  BusClient& operator=(const BusClient&) = delete;

  struct Answer {
    std::string error;  ///< name of the error, empty for none
    std::shared_ptr<sd_bus_message> message;

    template <typename... Targets>
    bool Read(const char* types, Targets... targets) const {
      return error.empty() && sd_bus_message_read(message.get(), types, targets...) > 0;
    }
  };

  /// A signal that was heard: a name such as "CUpdate", or the properties of a `PropertiesChanged`, as
  /// "CGross CNet".
  struct Heard {
    std::string path;
    std::string what;
    bool operator==(const Heard&) const = default;
  };

  template <typename... Arguments>
  Answer Call(const std::string& path, const char* interface, const char* member, const char* types = "",
              Arguments... arguments) {
    return Wait(Message(path, interface, member, types, arguments...));
  }
  /// Sends a call and takes no interest in its answer.
  void Post(const std::string& path, const char* interface, const char* member) {
    std::uint64_t cookie = 0;
    sd_bus_send(bus_, Message(path, interface, member, "").get(), &cookie);
  }
  /// Returns when the bus has handed on all that was sent.
  void WaitForBus() {
    sd_bus_call_method(bus_, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetId", nullptr,
                       nullptr, "");
  }
  template <typename Value>
  Answer Set(const std::string& path, const char* property, const char* type, Value value) {
    return Call(path, "org.freedesktop.DBus.Properties", "Set", "ssv", InterfaceOf(path), property, type, value);
  }
  template <typename Value>
  Value Get(const std::string& path, const char* property, const char* type) {
    Value value{};
    Call(path, "org.freedesktop.DBus.Properties", "Get", "ss", InterfaceOf(path), property).Read("v", type, &value);
    return value;
  }
  double Number(const std::string& path, const char* property) { return Get<double>(path, property, "d"); }
  int Word(const std::string& path, const char* property) { return Get<std::int16_t>(path, property, "n"); }
  std::string Text(const std::string& path, const char* property);

  /// True if the manager is on the bus.
  bool SeesManager();
  /// From now on signals of the manager's objects are kept in `Signals`.
  void Listen();
  const std::vector<Heard>& Signals() const { return signals_; }
  /// Takes nothing any more, like a program that is stopped.
  void StopReading();
  void ForgetSignals() { signals_.clear(); }
  /// Handles what has arrived; true if there was something.
  bool Work();
  sd_bus* Bus() { return bus_; }

 private:
  using MessagePtr = std::shared_ptr<sd_bus_message>;

  static const char* InterfaceOf(std::string_view path);
  template <typename... Arguments>
  MessagePtr Message(const std::string& path, const char* interface, const char* member, const char* types,
                     Arguments... arguments) {
    sd_bus_message* message = nullptr;
    sd_bus_message_new_method_call(bus_, &message, "org.tarvex.Manager", path.c_str(), interface, member);
    sd_bus_message_append(message, types, arguments...);
    return {message, sd_bus_message_unref};
  }
  Answer Wait(const MessagePtr& call);
  static int Keep(sd_bus_message* signal, void* client, sd_bus_error* error);

  sd_bus* bus_ = nullptr;
  std::vector<Heard> signals_;
};
