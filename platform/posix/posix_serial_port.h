#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <utility>

#include "platform/posix/descriptor.h"
#include "platform/posix/link.h"
#include "platform/serial_ports.h"

/// What the ports of one control array share.
struct PortSurroundings {
  std::function<std::string(int comNumber)> addressOf;
  std::function<std::int64_t()> clock;  ///< milliseconds that never run backwards
  std::set<std::string> heldAddresses;  ///< of all open ports, also of those whose device is away
  Descriptor poller;                    ///< epoll instance that watches the links of all open ports
};

/// One port: its settings, its link while it is open, the bytes waiting on either side.
class PosixSerialPort : public SerialPort {
 public:
  /// `index` is what the poller says of this port.
  PosixSerialPort(PortSurroundings& surroundings, std::uint32_t index) : surroundings_(surroundings), index_(index) {}
  PosixSerialPort(const PosixSerialPort&) = delete;
  PosixSerialPort& operator=(const PosixSerialPort&) = delete;
  ~PosixSerialPort() override { Close(); }

  bool PortOpen() const override { return link_ != nullptr; }
  /// A `tcp://` port opens at once and connects in the background. A text that is no address is 8002.
  void Open() override;
  void Close() override;

  int CommPort() const override { return commPort_; }
  void SetCommPort(int number) override { commPort_ = number; }
  const std::string& Settings() const override { return settings_; }
  void SetSettings(std::string_view settings) override { settings_ = settings; }
  int Handshaking() const override { return handshaking_; }
  void SetHandshaking(int mode) override { handshaking_ = mode; }

  bool TakeLineLoss() override { return std::exchange(lineLost_, false); }
  std::size_t InBufferCount() override;
  void Input(std::string& chunk) override;
  /// A text goes out whole or not at all: once 64 KiB wait for a line that does not take them, further texts are
  /// dropped; so is everything unsent when the device goes away.
  bool Output(std::string_view data) override;

  /// Before the poll of a tick: looks for a device that is away.
  void Prepare();
  /// After the poll, if it had anything to say of this port: `events` as epoll gives them.
  void Serve(std::uint32_t events);

 private:
  std::unique_ptr<Link> MakeLink() const;
  std::string Who(const std::string& address) const;
  void RequireOpen() const;
  void Receive(bool deviceGone);
  void Send();
  void GiveUpDevice();
  void Watch();

  PortSurroundings& surroundings_;
  std::uint32_t index_;
  int commPort_ = 1;
  std::string settings_ = "9600,N,8,1";
  int handshaking_ = 0;

  std::unique_ptr<Link> link_;
  std::int64_t nextTry_ = 0;
  std::unique_ptr<char[]> input_;
  std::size_t inputSize_ = 0;
  bool lineLost_ = false;
  std::string output_;
};
