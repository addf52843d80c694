#pragma once

#include <systemd/sd-bus.h>

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

/// The manager has not done what it was asked for. The text is a sentence for a person, with what to do about it.
struct ManagerFault : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The manager that runs on a program's folder, for a program that changes the settings files there. Each call finds it
/// anew, since it may come and go, and starts none. It waits up to ten seconds for the answer.
class RunningManager {
 public:
  explicit RunningManager(std::string folder);

  /// Whether a manager runs on the folder now. Only then the other functions make sense. Raises `ManagerFault` if there
  /// is no such folder.
  bool IsThere() const;

  /// Display number of the channel that is being edited on its setup screen, 0 for none. Raises `ManagerFault`.
  int EditedChannel();
  /// Has it take the file of a channel, 1 to 32, or of a protocol, 0 to 41. Raises `ManagerFault`: it goes on with what
  /// it had then.
  void ReloadChannel(int number);
  void ReloadProtocol(int proto);

 private:
  struct Unref {
    void operator()(sd_bus* bus) const { sd_bus_flush_close_unref(bus); }
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
  };
  using Bus = std::unique_ptr<sd_bus, Unref>;
  using Message = std::unique_ptr<sd_bus_message, Unref>;

  /// A manager that has been found: its own name on the bus, so that no other can take its place between two calls.
  struct Found {
    Bus bus;
    std::string name;
  };

  Found Find() const;
  Message Property(const Found& manager, const char* property) const;
  void Reload(const char* method, std::int32_t number) const;
  /// Sends the call and waits; raises `ManagerFault` on an error of the manager or the bus.
  Message Answer(sd_bus* bus, const Message& call) const;
  [[noreturn]] void RaiseUnreachable(const std::string& why) const;

  std::string folder_;
};
