#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Lines on standard output or standard error that nobody waits for: what a reader that has stopped reading does
/// not take is left out, and said so when it reads again.
class LineOutput {
 public:
  explicit LineOutput(int handle) : handle_(handle) {}

  /// `lines` ends with a line feed; at most 4096 bytes are sure to go out at once.
  void Write(std::string_view lines);

 private:
  bool TakesMore() const;
  void Send(std::string_view text) const;

  int handle_;
  std::size_t leftOut_ = 0;
};
