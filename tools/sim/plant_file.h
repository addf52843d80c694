#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "tools/sim/device.h"

/// A plant file that cannot be understood; the text names file, line and key.
class PlantFileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads a plant description: one `[scale]` section a device, `key = value` lines, `#` comments. A link without a
/// folder lies in `linksFolder`; a device without a link takes `scale` and its COM number.
std::vector<DeviceSettings> ReadPlant(std::string_view text, const std::string& fileName,
                                      const std::string& linksFolder);

/// A plain plant for measurements: `scales` standard scales whose weight changes all the time, `rate` frames a
/// second each, written at once.
std::vector<DeviceSettings> PlainPlant(int scales, double rate, const std::string& linksFolder);
