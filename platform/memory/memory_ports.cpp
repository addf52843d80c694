#include "platform/memory/memory_ports.h"

#include "core/table.h"
#include "platform/run_time_error.h"

void MemoryPort::Open() {
  ++opened;
  if (openError != 0) throw RunTimeError(openError, "COM" + std::to_string(commPort) + " cannot be opened");
  open = true;
}

void MemoryPort::RequireOpen() const {
  if (!open) throw RunTimeError(ErrorNumber::SerialPortNotOpen, "The port is not open");
}

std::size_t MemoryPort::InBufferCount() {
  RequireOpen();
  return waiting.size();
}

void MemoryPort::Input(std::string& chunk) {
  RequireOpen();
  chunk = waiting;
  waiting.clear();
}

bool MemoryPort::Output(std::string_view data) {
  RequireOpen();
  if (refuses) return false;
  sent.emplace_back(data);
  return true;
}

SerialPort& MemoryPorts::Port(int ch) {
  if (ch < 0 || ch >= static_cast<int>(port.size())) RaiseSubscriptOutOfRange();
  return port[static_cast<std::size_t>(ch)];
}

void MemoryPorts::Poll() {
  if (pollError != 0) throw RunTimeError(pollError, "poll failed");
}
