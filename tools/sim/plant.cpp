#include "tools/sim/plant.h"

#include <stdexcept>

namespace sim {

namespace {

std::unique_ptr<Line> MakeLine(const DeviceSettings& settings) {
  return settings.onTcp ? MakeTcpLine(settings.tcpPort) : MakeTerminalLine(settings.link);
}

}  // namespace

Plant::Plant(const std::vector<DeviceSettings>& settings, std::uint32_t seed)
    : troubles_(settings.size()), watches_(settings.size()) {
  devices_.reserve(settings.size());
  for (const DeviceSettings& device : settings) {
    devices_.emplace_back(device, MakeLine(device), seed + static_cast<std::uint32_t>(device.com));
  }
}

void Plant::Run(double now) {
  now_ = now;
  for (std::size_t index = 0; index < devices_.size(); ++index) {
    watches_[index] = {devices_[index].Wire().Watched(), POLLIN, 0};
  }
  poll(watches_.data(), watches_.size(), 0);
  for (std::size_t index = 0; index < devices_.size(); ++index) {
    devices_[index].Wire().Notice(watches_[index].revents);
    devices_[index].Run(now);
  }
}

Device* Plant::Find(int com) {
  for (Device& device : devices_) {
    if (device.Settings().com == com) return &device;
  }
  return nullptr;
}

std::string Plant::TakeNews() {
  std::string news;
  for (std::size_t index = 0; index < devices_.size(); ++index) {
    const std::string& trouble = devices_[index].Trouble();
    if (trouble == troubles_[index]) continue;
    troubles_[index] = trouble;
    news += "COM" + std::to_string(devices_[index].Settings().com) + ": " +
            (trouble.empty() ? "plugged back" : "cannot be plugged back: " + trouble) + "\n";
  }
  return news;
}

std::string PortFile(const Plant& plant) {
  std::string text;
  for (const Device& device : plant.Devices()) {
    const std::string address = device.Wire().Address();
    if (address.find_first_of("\"\r\n") != address.npos) {
      throw std::invalid_argument("A ports file cannot hold the address " + address);
    }
    text += std::to_string(device.Settings().com) + ",\"" + address + "\"\r\n";
  }
  return text;
}

}  // namespace sim
