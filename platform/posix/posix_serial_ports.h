#pragma once

#include <deque>

#include "platform/posix/monotonic_clock.h"
#include "platform/posix/posix_serial_port.h"

/// The control array on real devices, pseudo-terminals and device servers. One call of the system a tick covers all
/// ports, and a silent port costs nothing at all.
class PosixSerialPorts : public SerialPorts {
 public:
  /// `addressOf` gives the address of a COM number, asked each time a port is opened: a device path or
  /// `tcp://host:port`. What it raises passes through.
  explicit PosixSerialPorts(std::function<std::string(int comNumber)> addressOf,
                            std::function<std::int64_t()> clock = MonotonicMilliseconds);

  SerialPort& Port(int ch) override;
  void Poll() override;

 private:
  static constexpr std::size_t kPorts = 32;

  PortSurroundings surroundings_;
  std::deque<PosixSerialPort> ports_;
};
