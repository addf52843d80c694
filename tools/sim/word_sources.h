#pragma once

#include <string>
#include <vector>

#include "platform/posix/descriptor.h"

namespace sim {

/// Somewhere that lines come from: standard input or the control pipe.
class WordSource {
 public:
  /// Reads from `descriptor`, which somebody else closes; -1 is a source without words.
  explicit WordSource(int descriptor) : descriptor_(descriptor) {}
  /// To be watched for input; -1 when nobody will speak any more.
  int Watched() const { return descriptor_; }
  /// The whole lines that have come. Called when the watch sees something.
  std::vector<std::string> Lines();

 private:
  int descriptor_;
  std::string text_;
};

/// A named pipe for words, removed at the end. Both ends are held, so that it does not end with its first speaker.
class ControlPipe {
 public:
  /// An empty path makes none. A pipe that an earlier run left is taken over; raises `std::system_error` for
  /// anything else that stands there.
  explicit ControlPipe(const std::string& path);
  ControlPipe(const ControlPipe&) = delete;
  ControlPipe& operator=(const ControlPipe&) = delete;
  ~ControlPipe();
  int Handle() const { return pipe_.Get(); }

 private:
  std::string path_;
  Descriptor pipe_;
};

}  // namespace sim
