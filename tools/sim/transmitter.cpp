#include "tools/sim/transmitter.h"

#include <algorithm>
#include <utility>

namespace sim {

namespace {

constexpr double kPause = 0.03;  ///< seconds between the pieces of a split frame
constexpr std::size_t kLargestPiece = 4;

}  // namespace

bool Transmitter::Take(std::string frame, double now) {
  if (Busy()) {
    ++leftOut_;
    return false;
  }
  unsent_ = std::move(frame);
  begun_ = false;
  allowed_ = 0;
  last_ = now;
  pauseUntil_ = 0;
  return true;
}

void Transmitter::Send(Line& line, double now, bool split) {
  if (!Busy()) return;
  allowed_ += (now - last_) * bytesASecond_;
  last_ = now;
  if (now < pauseUntil_) return;
  std::size_t size = unsent_.size();
  if (bytesASecond_ > 0) size = std::min(size, static_cast<std::size_t>(allowed_));
  if (split) {
    size = std::min(size, std::uniform_int_distribution<std::size_t>(1, kLargestPiece)(random_));
    pauseUntil_ = now + kPause;
  }
  if (size == 0) return;
  const std::size_t taken = line.Send(std::string_view(unsent_).substr(0, size));
  if (taken == 0 && !begun_) {
    unsent_.clear();
    ++leftOut_;
    return;
  }
  begun_ = true;
  allowed_ = std::max(0.0, allowed_ - static_cast<double>(taken));
  unsent_.erase(0, taken);
  if (unsent_.empty()) ++sent_;
}

}  // namespace sim
