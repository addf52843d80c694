#pragma once

#include <string>

#include "platform/posix/descriptor.h"

/// Bytes on their way to a terminal that nobody waits for: a terminal that stalls (a remote shell whose network is
/// gone) may hold up its picture, never the scan.
class TerminalOutput {
 public:
  /// Writes to the terminal at standard output. Raises a `std::system_error` if there is no room for a buffer.
  TerminalOutput();

  /// Where the picture is written; what lies there is on its way with the next `Send`.
  int Buffer() const { return buffer_.Get(); }
  /// Takes over what was written to the buffer and sends as much as the terminal takes at once.
  void Send();
  /// True while the terminal has not taken all that was sent.
  bool Behind() const { return !pending_.empty(); }
  /// Sends the rest, for at most so long.
  void Finish(int milliseconds);

 private:
  void TakeBuffer();
  bool Write();

  Descriptor buffer_;
  Descriptor terminal_;  ///< an opening of our own, so that only we do not wait
  std::string pending_;
};
