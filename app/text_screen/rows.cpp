#include "app/text_screen/rows.h"

#include <algorithm>

ChannelSet ShownChannels(const Tables& tables, bool all) {
  ChannelSet shown;
  for (int ch = 0; ch <= tables.MaxChannel; ++ch) {
    shown[static_cast<std::size_t>(ch)] = all || IsEnabledOrFailed(tables, ch);
  }
  return shown;
}

void RowWindow::Fit(int rows, int height) { Fit(rows, height, first_); }

void RowWindow::Fit(int rows, int height, int first) {
  rows_ = rows;
  height_ = std::max(height, 0);
  first_ = std::clamp(first, 0, std::max(0, rows_ - height_));
}

int RowWindow::End() const { return std::min(rows_, first_ + height_); }

std::string CountText(const ChannelCount& count, std::int64_t streamsPerSecond) {
  return std::to_string(count.online) + " of " + std::to_string(count.enabled) + " online   " +
         std::to_string(streamsPerSecond) + " streams/s";
}

bool StreamRate::Update(std::int64_t streams, std::int64_t seconds) {
  if (seconds == seconds_) return false;
  const std::int64_t passed = seconds - seconds_;
  const bool clockWasSet = passed < 0 || passed > 60;  // also at the first call
  perSecond_ = clockWasSet ? 0 : (streams - streams_) / passed;
  streams_ = streams;
  seconds_ = seconds;
  return true;
}
