#pragma once

#include <memory>
#include <string>
#include <string_view>

/// The wire of a simulated device. It can be pulled and plugged back; nothing on it ever waits.
class Line {
 public:
  virtual ~Line() = default;
  /// Connects the wire. Raises `std::system_error`.
  virtual void Plug() = 0;
  virtual void Pull() = 0;
  virtual bool Plugged() const = 0;
  /// What a program opens to reach the device: a path or `tcp://host:port`.
  virtual std::string Address() const = 0;
  /// Bytes that have come from the program.
  virtual std::string Receive() = 0;
  /// How many of the bytes the line has taken; all of them where nobody listens.
  virtual std::size_t Send(std::string_view bytes) = 0;
};

/// A pseudo-terminal whose far end is found under the symbolic link `path`.
std::unique_ptr<Line> MakeTerminalLine(const std::string& path);

/// A server for one client at a time on 127.0.0.1.
std::unique_ptr<Line> MakeTcpLine(int port);
