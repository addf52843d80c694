#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace sim {

/// The wire of a simulated device. It can be pulled and plugged back; nothing on it ever waits.
class Line {
 public:
  virtual ~Line() = default;
  /// Connects the wire if it is not. Raises `std::system_error` with the reason.
  virtual void Plug() = 0;
  virtual void Pull() = 0;
  virtual bool Plugged() const = 0;
  /// What a program opens to reach the device: a path or `tcp://host:port`.
  virtual std::string Address() const = 0;

  /// Descriptor to be watched for input, -1 if there is none.
  virtual int Watched() const = 0;
  /// Takes what the watch saw, in the bits of poll(2): callers that come and go.
  virtual void Notice(short events) = 0;
  /// Whether a program has the other end open.
  virtual bool Listened() const = 0;
  /// Bytes that the last watch saw coming from the program.
  virtual std::string Receive() = 0;
  /// How many of the bytes the line has taken, from the first one on.
  virtual std::size_t Send(std::string_view bytes) = 0;
};

/// A pseudo-terminal whose far end is found under the symbolic link `path`. A link that stands there is replaced;
/// anything else is left alone, and plugging raises.
std::unique_ptr<Line> MakeTerminalLine(const std::string& path);

/// A serial device server for one caller at a time on 127.0.0.1. Port 0 takes any free one and keeps it.
std::unique_ptr<Line> MakeTcpLine(int port);

}  // namespace sim
