#include "tools/sim/device.h"

#include <algorithm>
#include <charconv>

namespace {

constexpr double kBitsAByte = 10;
constexpr double kSplitPause = 0.03;  ///< seconds between the pieces of a split write
constexpr std::size_t kLongestCommand = 32;

}  // namespace

Device::Device(const DeviceSettings& settings, std::unique_ptr<Line> line, std::uint32_t seed)
    : settings_(settings), line_(std::move(line)), scale_(settings.scale, seed), random_(seed) {
  line_->Plug();
  nextFrame_ = std::uniform_real_distribution<double>(0, 1 / settings_.rate)(random_);
}

void Device::Run(double now) {
  const double passed = std::max(0.0, now - now_);
  now_ = now;
  if (settings_.faults.On(Fault::Unplug, now)) {
    line_->Pull();
    unsent_.clear();
    frameBegun_ = false;
    return;
  }
  line_->Plug();
  TakeCommands();
  if (settings_.baud > 0) credit_ = std::min(credit_ + passed * settings_.baud / kBitsAByte, 64.0);
  while (nextFrame_ <= now) {
    const double period = 1 / settings_.rate;
    if (nextFrame_ < now - 1) nextFrame_ = now;  // after a pause there is nothing to catch up with
    nextFrame_ += period;
    scale_.Advance(period);
    if (!settings_.onRequest && !settings_.faults.On(Fault::Silence, now)) QueueFrame(false);
  }
  SendAtLineSpeed(now);
}

void Device::TakeCommands() {
  for (const char character : line_->Receive()) {
    if (character == '\n') continue;
    if (character == '\r') {
      Obey(command_);
      command_.clear();
    } else if (command_.size() < kLongestCommand) {
      command_ += character;
    }
  }
}

/// A command that the device does not know or cannot carry out has no answer: the next frames show the effect.
void Device::Obey(const std::string& command) {
  if (command == "T") {
    scale_.Tare();
  } else if (command == "Z") {
    scale_.Zero();
  } else if (command == "C") {
    scale_.ClearTare();
  } else if (command == "P") {
    QueueFrame(true);
  } else if (command.size() > 2 && command.front() == 'K' && command.back() == 'A') {
    double value = 0;
    const char* const end = command.data() + command.size() - 1;
    const auto read = std::from_chars(command.data() + 1, end, value);
    if (read.ec == std::errc{} && read.ptr == end) scale_.PresetTare(value);
  }
}

/// A frame that the line has no room for is left out whole.
void Device::QueueFrame(bool printRequest) {
  if (!unsent_.empty() && !printRequest) return;
  std::string frame = EncodeFrame(settings_.form, scale_.Read(), printRequest);
  if (settings_.faults.On(Fault::Cut, now_)) {
    frame.resize(std::uniform_int_distribution<std::size_t>(1, frame.size() - 1)(random_));
  }
  if (settings_.faults.On(Fault::Garbage, now_)) frame = Garbage() + frame;
  unsent_ += frame;
  ++framesSent_;
}

std::string Device::Garbage() {
  std::string garbage(std::uniform_int_distribution<std::size_t>(1, 40)(random_), '\0');
  std::uniform_int_distribution<int> byte(0, 255);
  for (char& character : garbage) character = static_cast<char>(byte(random_));
  return garbage;
}

void Device::SendAtLineSpeed(double now) {
  if (unsent_.empty() || now < holdUntil_) return;
  std::size_t size = unsent_.size();
  if (settings_.baud > 0) size = std::min(size, static_cast<std::size_t>(credit_));
  if (settings_.faults.On(Fault::Split, now)) {
    size = std::min<std::size_t>(size, std::uniform_int_distribution<std::size_t>(1, 4)(random_));
    holdUntil_ = now + kSplitPause;
  }
  if (size == 0) return;
  const std::size_t taken = line_->Send(std::string_view(unsent_).substr(0, size));
  if (taken == 0 && !frameBegun_) {
    unsent_.clear();  // a full line loses whole frames, never half ones
    return;
  }
  unsent_.erase(0, taken);
  frameBegun_ = !unsent_.empty();
  credit_ -= static_cast<double>(taken);
}
