#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

/// The way to the device behind an open port: a serial line or a connection to a device server. It may go away
/// and come back while the port stays open. No call waits.
class Link {
 public:
  enum class State { Away, Connecting, Connected };

  virtual ~Link() = default;

  /// What makes this link the same as another one: two ports may not hold the same address.
  const std::string& Address() const { return address_; }
  State Now() const { return state_; }

  /// Takes hold of the device, or begins to. Raises 8002 if it cannot be used, 8005 if somebody else holds it;
  /// the link is then away.
  virtual void Connect() = 0;
  /// Gives the device back. What has not left yet is dropped.
  virtual void Disconnect() noexcept = 0;
  /// Goes on with connecting. `revents` is what poll() said of `Handle`, 0 if it was not asked.
  virtual void Progress(short revents) = 0;

  /// Descriptor to poll: for input when connected, for output while connecting; -1 if there is none.
  virtual int Handle() const = 0;
  /// Reads up to `size` bytes of a connected link: 0 if none are there, nothing if the device has gone.
  virtual std::optional<std::size_t> Read(char* to, std::size_t size) = 0;
  /// Hands bytes to a connected link: how many it took, nothing if the device has gone.
  virtual std::optional<std::size_t> Write(std::string_view data) = 0;

 protected:
  explicit Link(std::string address) : address_(std::move(address)) {}
  void SetState(State state) { state_ = state; }

 private:
  std::string address_;
  State state_ = State::Away;
};
