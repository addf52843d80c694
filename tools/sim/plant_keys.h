#pragma once

#include <stdexcept>
#include <string_view>

#include "tools/sim/plant_file.h"

namespace sim {

/// A value that a key cannot take; the text says what was expected.
class BadValue : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A key of a plant file. Setting it raises `BadValue`.
struct PlantKey {
  std::string_view name;
  void (*set)(PlantSettings&, std::string_view value);
};

struct DeviceKey {
  std::string_view name;
  void (*set)(DeviceSettings&, std::string_view value);
};

struct TerminalKey {
  std::string_view name;
  void (*set)(TerminalSettings&, std::string_view value);
};

struct ClientKey {
  std::string_view name;
  void (*set)(ClientSettings&, std::string_view value);
};

/// Null if no key of the whole plant, or of a section of that kind, has this name.
const PlantKey* FindPlantKey(std::string_view name);
const DeviceKey* FindDeviceKey(std::string_view name);
const TerminalKey* FindTerminalKey(std::string_view name);
const ClientKey* FindClientKey(std::string_view name);

}  // namespace sim
