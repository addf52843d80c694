#include "tools/sim/plant.h"

#include <sstream>

namespace {

constexpr double kUntilToldOtherwise = 1e9;
constexpr double kUsualSeconds = 5;

std::unique_ptr<Line> MakeLine(const DeviceSettings& settings) {
  return settings.tcpPort >= 0 ? MakeTcpLine(settings.tcpPort) : MakeTerminalLine(settings.link);
}

}  // namespace

Plant::Plant(const std::vector<DeviceSettings>& settings, std::uint32_t seed) {
  devices_.reserve(settings.size());
  for (const DeviceSettings& device : settings) {
    devices_.emplace_back(device, MakeLine(device), seed + static_cast<std::uint32_t>(device.com));
  }
}

void Plant::Run(double now) {
  now_ = now;
  for (Device& device : devices_) device.Run(now);
}

Device* Plant::Find(int com) {
  for (Device& device : devices_) {
    if (device.Settings().com == com) return &device;
  }
  return nullptr;
}

std::string_view Plant::Help() {
  return "pull COM              take the cable out of a device\n"
         "plug COM              put it back\n"
         "silence COM [SECONDS] the device sends nothing (5 seconds if none are given)\n"
         "garbage COM [SECONDS] random bytes in front of each frame\n"
         "cut COM [SECONDS]     frames that end too early\n"
         "split COM [SECONDS]   frames in small pieces\n"
         "stop COM              end every fault of the device, the planned ones too\n"
         "load COM WEIGHT       put this weight on and leave it there\n"
         "quit                  end the plant\n";
}

std::string Plant::Obey(std::string_view line) {
  std::istringstream words{std::string(line)};
  std::string verb;
  int com = 0;
  words >> verb;
  if (verb.empty()) return {};
  if (verb == "help") return std::string(Help());
  if (verb == "quit") {
    ended_ = true;
    return "The plant ends.\n";
  }
  words >> com;
  Device* device = words ? Find(com) : nullptr;
  const auto fault = FaultOf(verb);
  const bool known = fault || verb == "pull" || verb == "plug" || verb == "stop" || verb == "load";
  if (!known) return "There is no word \"" + verb + "\"; try help.\n";
  if (device == nullptr) return "Which COM number? \"" + std::string(line) + "\" names no device of this plant.\n";
  double number = kUsualSeconds;
  const bool given = static_cast<bool>(words >> number);
  if (!given) number = kUsualSeconds;

  if (verb == "load") {
    if (!given) return "Which weight? Write: load COM WEIGHT\n";
    device->Platform().PutOn(number);
  } else if (verb == "pull") {
    device->Faults().Start(Fault::Unplug, now_, kUntilToldOtherwise);
  } else if (verb == "plug") {
    device->Faults().Stop(Fault::Unplug);
  } else if (verb == "stop") {
    for (std::size_t index = 0; index < kFaults; ++index) device->Faults().Stop(static_cast<Fault>(index));
  } else {
    device->Faults().Start(*fault, now_, number);
  }
  return "COM" + std::to_string(com) + ": " + std::string(line) + "\n";
}

std::string Plant::PortFile() const {
  std::string text;
  for (const Device& device : devices_) {
    text += std::to_string(device.Settings().com) + ",\"" + device.Address() + "\"\r\n";
  }
  return text;
}

long Plant::FramesSent() const {
  long frames = 0;
  for (const Device& device : devices_) frames += device.FramesSent();
  return frames;
}
