#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// One element of the port control array `MSComm(0..31)`: the serial link of one channel.
/// Data are bytes; nothing is translated.
class SerialPort {
 public:
  virtual ~SerialPort() = default;

  virtual bool PortOpen() const = 0;
  /// Opens the port named by `CommPort` with `Settings` and `Handshaking`. An open port is left as it is.
  /// Raises 8002 (there is no such port, or it refuses the settings) or 8005 (held by another channel or program).
  virtual void Open() = 0;
  /// Closes the port. A closed port is left as it is; never raises.
  virtual void Close() = 0;

  /// Port number as people say it: 1 is COM1.
  virtual int CommPort() const = 0;
  virtual void SetCommPort(int number) = 0;
  /// Text such as "9600,N,8,1": baud, parity N, O or E in either case, data bits, stop bits.
  virtual const std::string& Settings() const = 0;
  virtual void SetSettings(std::string_view settings) = 0;
  /// 0 none, 1 XON/XOFF.
  virtual int Handshaking() const = 0;
  virtual void SetHandshaking(int mode) = 0;

  /// Bytes waiting, as found by the last `SerialPorts::Poll`. Raises 8012 if the port is not open.
  virtual std::size_t InBufferCount() = 0;
  /// Puts all waiting bytes in place of what `chunk` holds and empties the input. Raises 8012 if not open.
  virtual void Input(std::string& chunk) = 0;
  /// True once after the line was lost, whether or not it is back: what was received before is no beginning of what
  /// comes now. A port that is not open has lost nothing.
  virtual bool TakeLineLoss() = 0;
  /// Sends `data` without waiting for the line; what the line does not take at once follows in order. False if
  /// nothing of it leaves the machine, because the line is gone or too much waits for it already.
  /// Raises 8012 if the port is not open.
  virtual bool Output(std::string_view data) = 0;
};

/// The control array: 32 ports, one a channel.
class SerialPorts {
 public:
  virtual ~SerialPorts() = default;

  /// `ch` 0 to 31; raises 9 outside.
  virtual SerialPort& Port(int ch) = 0;
  /// Looks at all open ports at once, at the start of a tick. A device that has vanished reads as silence
  /// and is tried again once a second; nothing is raised for it.
  virtual void Poll() = 0;
};
