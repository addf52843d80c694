#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/posix/descriptor.h"
#include "platform/posix/host_lookup.h"
#include "platform/posix/link.h"

/// Host and port of a serial device server.
struct TcpAddress {
  std::string host;  ///< name or numeric address, in lower case
  std::string port;  ///< 1 to 65535, without leading zeros
};

/// Reads `tcp://host:port`; an IPv6 address stands in brackets. Nothing for any other text.
std::optional<TcpAddress> ParseTcpAddress(std::string_view text);

/// A connection to a serial device server. Settings of the line belong to the server.
class TcpLink : public Link {
 public:
  explicit TcpLink(TcpAddress address);

  /// Begins to connect. A server that cannot be reached is away, which is no fault of the port.
  void Connect() override;
  void Disconnect() noexcept override;
  void Progress(short revents) override;
  int Handle() const override { return socket_.Get(); }
  std::optional<std::size_t> Read(char* to, std::size_t size) override;
  std::optional<std::size_t> Write(std::string_view data) override;

 private:
  void TryNextAddress();

  TcpAddress server_;
  std::optional<HostLookup> lookup_;
  HostLookup::AddressList addresses_;
  const addrinfo* next_ = nullptr;
  Descriptor socket_;
};
