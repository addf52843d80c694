#include "tools/sim/device.h"

#include <system_error>

namespace sim {

namespace {

constexpr double kPlugAgain = 1;        ///< seconds
constexpr double kWorthCatchingUp = 1;  ///< seconds; after a longer sleep of the machine frames are missing

}  // namespace

Device::Device(const DeviceSettings& settings, std::unique_ptr<Line> line, std::uint32_t seed)
    : settings_(settings),
      line_(std::move(line)),
      scale_(settings.scale, seed),
      transmitter_(settings.baud, seed),
      random_(seed) {
  line_->Plug();
  nextFrame_ = std::uniform_real_distribution<double>(0, 1 / settings_.rate)(random_);
}

void Device::Run(double now) {
  KeepPlugged(now);
  const bool silent = On(Fault::Silence, now);
  const bool talks = !silent && line_->Listened();
  if (!talks) {
    transmitter_.Drop();
    printWanted_ = weightWanted_ = false;
  }
  PassTime(now, talks);
  const std::string bytes = line_->Receive();  // taken from the line even if the device does not hear it
  if (silent) return;
  for (const Command& command : commands_.Take(bytes)) Obey(command);
  if (!talks) return;
  if ((printWanted_ || weightWanted_) && !transmitter_.Busy()) SendFrame(now);
  transmitter_.Send(*line_, now, On(Fault::Split, now));
}

void Device::KeepPlugged(double now) {
  if (On(Fault::Unplug, now)) {
    line_->Pull();
    nextPlug_ = now;
    return;
  }
  if (now < nextPlug_) return;
  try {
    line_->Plug();
    trouble_.clear();
  } catch (const std::system_error& error) {
    trouble_ = error.what();
    nextPlug_ = now + kPlugAgain;
  }
}

/// Every frame shows the weight of its own time, so that the same plant sends the same frames again.
void Device::PassTime(double now, bool talks) {
  const double period = 1 / settings_.rate;
  if (nextFrame_ < now - kWorthCatchingUp - period) nextFrame_ = now;
  for (; nextFrame_ <= now; nextFrame_ += period) {
    scale_.AdvanceTo(nextFrame_);
    if (talks && !settings_.onRequest) SendFrame(now);
  }
  scale_.AdvanceTo(now);
}

/// What the scale refuses has no answer: the next frames show the effect.
void Device::Obey(const Command& command) {
  switch (command.kind) {
    case Command::Kind::Zero:
      scale_.Zero();
      return;
    case Command::Kind::Print:
      printWanted_ = true;
      return;
    case Command::Kind::Weight:
      weightWanted_ = true;
      return;
    case Command::Kind::Tare:
      scale_.Tare();
      return;
    case Command::Kind::ClearTare:
      scale_.ClearTare();
      return;
    case Command::Kind::PresetTare:
      scale_.PresetTare(command.value);
      return;
  }
}

void Device::SendFrame(double now) {
  std::string frame = EncodeFrame(settings_.form, scale_.Read(), printWanted_);
  if (On(Fault::Cut, now)) {
    frame.resize(std::uniform_int_distribution<std::size_t>(1, frame.size() - 1)(random_));
  }
  if (On(Fault::Garbage, now)) frame = Garbage() + frame;
  if (transmitter_.Take(std::move(frame), now)) printWanted_ = weightWanted_ = false;
}

std::string Device::Garbage() {
  std::string garbage(std::uniform_int_distribution<std::size_t>(1, 40)(random_), '\0');
  std::uniform_int_distribution<int> byte(0, 255);
  for (char& character : garbage) character = static_cast<char>(byte(random_));
  return garbage;
}

}  // namespace sim
