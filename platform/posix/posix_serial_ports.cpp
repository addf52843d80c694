#include "platform/posix/posix_serial_ports.h"

#include <ctime>

#include "core/table.h"

std::int64_t MonotonicMilliseconds() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return std::int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1'000'000;
}

PosixSerialPorts::PosixSerialPorts(std::function<std::string(int comNumber)> addressOf,
                                   std::function<std::int64_t()> clock)
    : surroundings_{std::move(addressOf), std::move(clock), {}} {
  slots_.fill({-1, 0, 0});
  for (pollfd& slot : slots_) ports_.emplace_back(surroundings_, slot);
}

SerialPort& PosixSerialPorts::Port(int ch) {
  if (ch < 0 || static_cast<std::size_t>(ch) >= kPorts) RaiseSubscriptOutOfRange();
  return ports_[static_cast<std::size_t>(ch)];
}

void PosixSerialPorts::Poll() {
  for (PosixSerialPort& port : ports_) port.Prepare();
  if (poll(slots_.data(), slots_.size(), 0) <= 0) return;
  for (std::size_t ch = 0; ch < kPorts; ++ch) {
    if (slots_[ch].revents != 0) ports_[ch].Serve();
  }
}
