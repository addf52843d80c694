#pragma once

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "platform/serial_ports.h"

/// A port whose far end is its user: bytes put into `waiting` arrive, `sent` holds each write. It opens whatever its
/// number and settings are, unless it is told to fail.
class MemoryPort : public SerialPort {
 public:
  std::string waiting;
  std::vector<std::string> sent;
  int openError = 0;      ///< number raised by each opening, 0 for none
  bool lineLost = false;  ///< the line went away since the last look
  bool refuses = false;   ///< takes no output, as a line that is gone
  bool open = false;
  int opened = 0;
  int commPort = 0;
  std::string settings;
  int handshaking = 0;

  bool PortOpen() const override { return open; }
  void Open() override;
  void Close() override { open = false; }
  int CommPort() const override { return commPort; }
  void SetCommPort(int number) override { commPort = number; }
  const std::string& Settings() const override { return settings; }
  void SetSettings(std::string_view text) override { settings = text; }
  int Handshaking() const override { return handshaking; }
  void SetHandshaking(int mode) override { handshaking = mode; }
  std::size_t InBufferCount() override;
  void Input(std::string& chunk) override;
  bool TakeLineLoss() override { return std::exchange(lineLost, false); }
  bool Output(std::string_view data) override;

 private:
  void RequireOpen() const;
};

class MemoryPorts : public SerialPorts {
 public:
  std::array<MemoryPort, 32> port;
  int pollError = 0;  ///< number raised by each look at all ports, 0 for none

  SerialPort& Port(int ch) override;
  void Poll() override;
};
