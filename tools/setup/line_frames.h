#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// Cuts what a strange device sends into frames without knowing its format: a frame ends with a line feed, an end of
/// text, a carriage return that no line feed follows, or a pause.
class LineFrames {
 public:
  /// Takes bytes that have arrived at `now`, in milliseconds, none for a look at the clock; the frames that have ended.
  std::vector<std::string> Take(const std::string& bytes, std::int64_t now);

 private:
  std::string open_;
  std::int64_t lastByte_ = 0;
};

/// How clean frames are, to tell the right line settings from wrong ones.
struct Cleanness {
  int frames = 0;
  int usualLength = 0;       ///< of most frames
  double ofUsualLength = 0;  ///< share of the frames, 0 to 1
  double readable = 0;       ///< share of characters that are printable or usual in frames, 0 to 1
  /// 0 to 1; the right settings are above 0.8.
  double Score() const { return frames < 2 ? 0 : ofUsualLength * readable * readable; }
};

Cleanness CleannessOf(const std::vector<std::string>& frames);
