#pragma once

#include <bitset>
#include <cstdint>
#include <string>

#include "core/tables.h"
#include "diagnostics/row_tone.h"

/// Which channels have a row on the screen, which of these rows are in sight, and what the head of the screen counts.

using ChannelSet = std::bitset<kChannels>;

/// Channels that are enabled and channels that failed; with `all` every one up to `MaxChannel`.
ChannelSet ShownChannels(const Tables& tables, bool all);

/// The part of a list of rows that is in sight.
class RowWindow {
 public:
  /// `rows` in the list, `height` of them in sight; keeps the first row in sight where possible.
  void Fit(int rows, int height);
  /// Moves by so many rows; stops at both ends.
  void Move(int by) { Fit(rows_, height_, first_ + by); }

  int First() const { return first_; }
  int Height() const { return height_; }
  /// One behind the last row in sight.
  int End() const;

 private:
  void Fit(int rows, int height, int first);

  int rows_ = 0;
  int height_ = 0;
  int first_ = 0;
};

/// What the head tells of the plant: "12 of 12 online   240 streams/s".
std::string CountText(const ChannelCount& count, std::int64_t streamsPerSecond);

/// Streams a second, from the count of all streams.
class StreamRate {
 public:
  /// To be called often; `seconds` is wall-clock time. True if a second has passed and the rate is a new one.
  bool Update(std::int64_t streams, std::int64_t seconds);
  std::int64_t PerSecond() const { return perSecond_; }

 private:
  std::int64_t streams_ = 0;
  std::int64_t seconds_ = 0;
  std::int64_t perSecond_ = 0;
};
