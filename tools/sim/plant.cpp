#include "tools/sim/plant.h"

#include <stdexcept>

namespace sim {

namespace {

std::unique_ptr<Line> MakeLine(const DeviceSettings& settings) {
  return settings.onTcp ? MakeTcpLine(settings.tcpPort) : MakeTerminalLine(settings.link);
}

}  // namespace

Plant::Plant(const std::vector<DeviceSettings>& settings, std::uint32_t seed,
             const std::vector<ClientSettings>& clients)
    : troubles_(settings.size()), watches_(settings.size()) {
  for (const ClientSettings& client : clients) clients_.emplace_back(client, MakeTerminalLine(client.link));
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
  for (SqlClient& client : clients_) {
    pollfd watch{client.Wire().Watched(), POLLIN, 0};
    poll(&watch, 1, 0);
    client.Wire().Notice(watch.revents);
    client.Run(now);
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
  const auto add = [&](int com, const std::string& address) {
    if (address.find_first_of("\"\r\n") != address.npos) {
      throw std::invalid_argument("A ports file cannot hold the address " + address);
    }
    text += std::to_string(com) + ",\"" + address + "\"\r\n";
  };
  for (const Device& device : plant.Devices()) add(device.Settings().com, device.Wire().Address());
  for (const SqlClient& client : plant.Clients()) add(client.Settings().com, client.Wire().Address());
  return text;
}

}  // namespace sim
