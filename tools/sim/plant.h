#pragma once

#include <poll.h>

#include <string>
#include <string_view>
#include <vector>

#include "tools/sim/device.h"
#include "tools/sim/sql_client.h"

namespace sim {

/// All devices and clients of a plant that are on lines, on one clock.
class Plant {
 public:
  /// Makes and plugs all lines. Raises `std::system_error`.
  Plant(const std::vector<DeviceSettings>& settings, std::uint32_t seed,
        const std::vector<ClientSettings>& clients = {});

  /// Brings every device to `now`, seconds since the start; times never go back.
  void Run(double now);
  /// The time of the last `Run`.
  double Now() const { return now_; }

  /// None if no device has this COM number.
  Device* Find(int com);
  const std::vector<Device>& Devices() const { return devices_; }
  const std::vector<SqlClient>& Clients() const { return clients_; }

  /// What has gone wrong or right with lines since the last call, a line each.
  std::string TakeNews();

 private:
  std::vector<Device> devices_;
  std::vector<SqlClient> clients_;
  std::vector<std::string> troubles_;  ///< of each device, as last told
  std::vector<pollfd> watches_;
  double now_ = 0;
};

/// The addresses of all devices as the text of a "Tarvex-Ports.Cfg". Raises `std::invalid_argument` for an address
/// that it cannot hold.
std::string PortFile(const Plant& plant);

}  // namespace sim
