#include "platform/posix/posix_serial_ports.h"

#include <sys/epoll.h>

#include <array>
#include <cerrno>
#include <system_error>

#include "core/table.h"

PosixSerialPorts::PosixSerialPorts(std::function<std::string(int comNumber)> addressOf,
                                   std::function<std::int64_t()> clock)
    : surroundings_{std::move(addressOf), std::move(clock), {}, Descriptor(epoll_create1(EPOLL_CLOEXEC))} {
  if (!surroundings_.poller) throw std::system_error(errno, std::generic_category(), "The ports cannot be watched");
  for (std::uint32_t index = 0; index < kPorts; ++index) ports_.emplace_back(surroundings_, index);
}

SerialPort& PosixSerialPorts::Port(int ch) {
  if (ch < 0 || static_cast<std::size_t>(ch) >= kPorts) RaiseSubscriptOutOfRange();
  return ports_[static_cast<std::size_t>(ch)];
}

void PosixSerialPorts::Poll() {
  for (PosixSerialPort& port : ports_) port.Prepare();
  std::array<epoll_event, kPorts> events;
  const int count = epoll_wait(surroundings_.poller.Get(), events.data(), kPorts, 0);
  for (int event = 0; event < count; ++event) {
    const epoll_event& ready = events[static_cast<std::size_t>(event)];
    ports_[ready.data.u32].Serve(ready.events);
  }
}
