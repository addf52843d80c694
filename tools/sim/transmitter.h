#pragma once

#include <cstdint>
#include <random>
#include <string>

#include "tools/sim/line.h"

namespace sim {

/// The sending end of a device's line: one frame at a time, at the speed of the line. A frame for which there is no
/// room is left out whole, so that a reader who is slow or away never gets half a frame.
class Transmitter {
 public:
  /// `baud`: line speed in bits a second; 0 sends a frame at once.
  Transmitter(int baud, std::uint32_t seed) : bytesASecond_(baud / 10.0), random_(seed) {}

  /// Whether a frame is on its way.
  bool Busy() const { return !unsent_.empty(); }
  /// Takes a frame; false if it is left out because another one is on its way.
  bool Take(std::string frame, double now);
  /// Forgets what is on its way: nobody listens any more.
  void Drop() { unsent_.clear(); }
  /// Sends what the line speed allows until `now`, in seconds; `split` in small pieces with pauses.
  void Send(Line& line, double now, bool split);

  long FramesSent() const { return sent_; }
  long FramesLeftOut() const { return leftOut_; }

 private:
  double bytesASecond_;
  std::mt19937 random_;
  std::string unsent_;
  bool begun_ = false;     ///< part of what is unsent has left already
  double allowed_ = 0;     ///< bytes that have had their time on the line
  double last_ = 0;        ///< time up to which they are counted
  double pauseUntil_ = 0;  ///< a split frame goes on then
  long sent_ = 0;
  long leftOut_ = 0;
};

}  // namespace sim
