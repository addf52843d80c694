#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/posix/descriptor.h"
#include "platform/posix/posix_serial_ports.h"
#include "tests/platform/machine.h"

/// The device's end of a line.
class FarEnd {
 public:
  explicit FarEnd(int handle) : handle_(handle) {}
  /// What the line takes of `data` at once, in bytes.
  std::size_t SendSome(std::string_view data);
  /// All that has arrived and was not taken yet.
  std::string Take();
  /// Waits for `size` bytes.
  std::string Take(std::size_t size);
  int Handle() const { return handle_.Get(); }

 private:
  Descriptor handle_;
};

/// A scale on a pseudo-terminal; `Path` is where the line's other end is opened.
class Scale : public FarEnd {
 public:
  Scale();
  std::string Path() const;
};

/// The ports under a clock turned by hand. COM1 stands for `address`; every other port has what `addressOf` says.
struct PlantFloor {
  std::string address;
  std::function<std::string(int)> addressOf = [this](int) { return address; };
  std::int64_t milliseconds = 0;
  PosixSerialPorts ports{[this](int number) { return addressOf(number); }, [this] { return milliseconds; }};

  PlantFloor() = default;
  explicit PlantFloor(std::string firstAddress) : address(std::move(firstAddress)) {}

  SerialPort& Open(int ch = 0, const char* settings = "9600,N,8,1", int handshaking = 0);
  /// Error number that opening channel `ch` raises, 0 for none.
  int OpeningFault(int ch);
  /// Polls until `size` bytes more have arrived at channel 0, and takes them.
  std::string Receive(std::size_t size);
  /// Lets `duration` milliseconds pass and polls.
  void Pass(std::int64_t duration);
  /// The scale sends `text`, the port must see exactly that, and the other way round.
  void ExpectTalk(FarEnd& device, const std::string& text = "ping");
};
