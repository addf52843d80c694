#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "tools/sim/device.h"
#include "tools/sim/sql_client.h"
#include "tools/sim/terminal.h"

namespace sim {

/// A plant file that cannot be understood; the text names file, line and key.
class PlantFileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A plant as its file describes it.
struct PlantSettings {
  std::string links;  ///< folder of the links; empty if the file names none
  std::uint32_t seed = 1;
  std::vector<DeviceSettings> devices;
  std::vector<TerminalSettings> terminals;
  std::vector<ClientSettings> clients;
};

/// Reads a plant description: `key = value` lines, a section `[scale]`, `[terminal]` or `[client]` for each part, at
/// least one, and `#` lines for people. `fileName` is for the errors. A device without a link takes `scale` and its COM
/// number, a client `client` and its.
PlantSettings ReadPlant(std::string_view text, const std::string& fileName);

/// A plain plant for measurements: `scales` standard scales whose weight changes all the time, `rate` frames a
/// second each, written at once.
PlantSettings PlainPlant(int scales, double rate);

/// Moves every link that is not a full path below `folder`.
void PlaceLinks(PlantSettings& plant, const std::string& folder);

}  // namespace sim
