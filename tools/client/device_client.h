#pragma once

#include <systemd/sd-bus.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

/// The nine fields of a channel's `Device` object.
struct DeviceState {
  std::string description;
  std::int32_t id = 0;
  std::int16_t command = 0;
  double parameter = 0;
  std::int16_t answer = 0;
  double gross = 0;
  double tare = 0;
  double net = 0;
  std::int16_t status = 0;
};

/// What one message of the manager, or one about it, has told.
struct DeviceNews {
  enum class Kind { Fields, Update, ManagerLeft, ManagerCame };
  Kind kind;
  std::vector<std::string> fields;  ///< properties that changed, with `Fields`
};

/// The manager cannot be reached; the text says why and what to do.
struct NoManager : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// A program's link to the `Device` object of one channel. Every call raises `NoManager` if the manager does not
/// answer. A manager that is not running is started by the bus, where it is installed for that.
class DeviceClient {
 public:
  using Clock = std::chrono::steady_clock;

  /// `channel` is the display number, 1 to 32. News are kept for `Wait` from now on.
  explicit DeviceClient(int channel);

  /// The state as the manager last told it.
  const DeviceState& State() const { return state_; }
  /// Asks for all fields at once.
  void Read();
  /// Writes the command fields and calls `CDoUpdate`, close together, so that nothing comes in between.
  void Command(std::int16_t code, double parameter);
  /// Next news of the channel, already in `State`; none if there are none until `end`.
  std::optional<DeviceNews> Wait(Clock::time_point end);

 private:
  struct Unref {
    void operator()(sd_bus* bus) const { sd_bus_flush_close_unref(bus); }
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
  };
  using Message = std::unique_ptr<sd_bus_message, Unref>;

  Message Call(const char* interface, const char* member) const;
  template <typename Value>
  void Set(const char* property, const char* type, Value value);
  Message Answer(const Message& call);
  void Match(const std::string& rule);
  std::optional<DeviceNews> Understand(sd_bus_message* signal);
  /// Takes the properties of a list of names and values into the state; gives the names.
  std::vector<std::string> Take(sd_bus_message* properties);

  std::unique_ptr<sd_bus, Unref> bus_;
  std::string path_;
  DeviceState state_;
};
