#pragma once

#include <functional>

/// Turns the loss of the display into a last call. The window system's adapter ends the program on the spot when its
/// server is gone: nothing is unwound and no window may be touched any more, but files can still be written and
/// ports closed. At most one object of this class exists at a time.
class DisplayLoss {
 public:
  /// `onLoss` may not raise.
  explicit DisplayLoss(std::function<void()> onLoss);
  /// An end of the program behind this is an orderly one.
  ~DisplayLoss();
  DisplayLoss(const DisplayLoss&) = delete;
  DisplayLoss& operator=(const DisplayLoss&) = delete;
};
