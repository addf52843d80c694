#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/sim/device.h"

/// All devices of a plant on one clock, and the words by which a person interferes.
class Plant {
 public:
  /// Makes and plugs all lines. Raises `std::system_error`.
  Plant(const std::vector<DeviceSettings>& settings, std::uint32_t seed);

  /// Brings every device to `now`, seconds since the start.
  void Run(double now);

  /// Carries out one line such as "pull 3" or "silence 3 5" and says what was done or what is wrong with it.
  /// "quit" sets `Ended`.
  std::string Obey(std::string_view line);
  bool Ended() const { return ended_; }

  /// The addresses of all devices as a port file: number, address in double quotes, one line each.
  std::string PortFile() const;
  long FramesSent() const;
  std::size_t Size() const { return devices_.size(); }

  static std::string_view Help();

 private:
  Device* Find(int com);

  std::vector<Device> devices_;
  double now_ = 0;
  bool ended_ = false;
};
