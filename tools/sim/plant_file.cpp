#include "tools/sim/plant_file.h"

#include <cmath>
#include <set>
#include <sstream>

#include "tools/sim/plant_keys.h"
#include "tools/sim/text.h"

namespace sim {

namespace {

class PlantReader {
 public:
  explicit PlantReader(const std::string& fileName) : fileName_(fileName) {}

  void Take(std::string_view line) {
    ++line_;
    line = Strip(line);
    if (line.empty() || line.starts_with('#')) return;
    if (line == "[scale]") {
      CheckDevice();
      plant_.devices.emplace_back();
      section_ = line_;
      keysSeen_.clear();
      return;
    }
    const std::size_t equals = line.find('=');
    if (equals == line.npos) Fail(line_, "expected [scale] or key = value, found \"" + std::string(line) + "\"");
    const std::string_view key = Strip(line.substr(0, equals));
    try {
      Set(key, Strip(line.substr(equals + 1)));
    } catch (const BadValue& bad) {
      Fail(line_, std::string(key) + ": expected " + bad.what());
    }
  }

  PlantSettings End() {
    if (plant_.devices.empty()) throw PlantFileError(fileName_ + ": there is no [scale] in it");
    CheckDevice();
    return std::move(plant_);
  }

 private:
  [[noreturn]] void Fail(int line, const std::string& what) const {
    throw PlantFileError(fileName_ + ":" + std::to_string(line) + ": " + what);
  }

  void Set(std::string_view name, std::string_view value) {
    const PlantKey* plantKey = plant_.devices.empty() ? FindPlantKey(name) : nullptr;
    const DeviceKey* deviceKey = plant_.devices.empty() ? nullptr : FindDeviceKey(name);
    if (plantKey == nullptr && deviceKey == nullptr) {
      if (FindDeviceKey(name) != nullptr) Fail(line_, "\"" + std::string(name) + "\" belongs below a [scale]");
      if (FindPlantKey(name) != nullptr) Fail(line_, "\"" + std::string(name) + "\" belongs above the first [scale]");
      Fail(line_, "there is no key \"" + std::string(name) + "\"");
    }
    // Each fault has a schedule of its own.
    if (name != "fault" && !keysSeen_.insert(std::string(name)).second) {
      Fail(line_, "\"" + std::string(name) + "\" is given twice");
    }
    if (plantKey != nullptr) plantKey->set(plant_, value);
    if (deviceKey != nullptr) deviceKey->set(plant_.devices.back(), value);
  }

  /// Looks at the section that ends here as a whole.
  void CheckDevice() {
    if (plant_.devices.empty()) return;
    DeviceSettings& device = plant_.devices.back();
    if (device.com == 0) Fail(section_, "this scale has no \"com\"");
    const std::string com = "COM" + std::to_string(device.com);
    if (!coms_.insert(device.com).second) Fail(section_, com + " is used twice");
    if (device.onTcp && !device.link.empty()) Fail(section_, com + " has a link and TCP; it can be on one line alone");
    if (device.name.empty()) device.name = "Scale " + std::to_string(device.com);
    if (!device.onTcp && device.link.empty()) device.link = "scale" + std::to_string(device.com);
    if (!device.onTcp && !links_.insert(device.link).second) {
      Fail(section_, "the link \"" + device.link + "\" is used twice");
    }
    CheckScale(com, device);
  }

  void CheckScale(const std::string& com, const DeviceSettings& device) const {
    const ScaleSettings& scale = device.scale;
    std::ostringstream fault;
    const double largest =
        static_cast<double>(LargestCounts(device.form, scale.decimals)) * std::pow(10.0, -scale.decimals);
    if (scale.capacity > largest) {
      fault << "the capacity of " << com << " is beyond " << largest << ", the largest weight of its frames";
    } else if (scale.tare > scale.capacity) {
      fault << "the tare of " << com << " is beyond its capacity of " << scale.capacity;
    } else {
      return;
    }
    Fail(section_, fault.str());
  }

  std::string fileName_;
  int line_ = 0;
  int section_ = 0;  ///< line of the last [scale]
  PlantSettings plant_;
  std::set<std::string> keysSeen_;
  std::set<int> coms_;
  std::set<std::string> links_;
};

}  // namespace

PlantSettings ReadPlant(std::string_view text, const std::string& fileName) {
  PlantReader reader(fileName);
  for (const std::string_view line : Pieces(text, '\n')) reader.Take(line);
  return reader.End();
}

PlantSettings PlainPlant(int scales, double rate) {
  PlantSettings plant;
  for (int com = 1; com <= scales; ++com) {
    DeviceSettings device;
    device.com = com;
    device.name = "Scale " + std::to_string(com);
    device.link = "scale" + std::to_string(com);
    device.rate = rate;
    device.baud = 0;
    device.scale.capacity = 9000;
    device.scale.load = {{100.0 + 10 * com, 2}, {8000.0 - 10 * com, 2}};
    device.scale.settle = 2;
    plant.devices.push_back(device);
  }
  return plant;
}

void PlaceLinks(std::vector<DeviceSettings>& devices, const std::string& folder) {
  for (DeviceSettings& device : devices) {
    if (!device.onTcp && !device.link.starts_with('/')) device.link = folder + "/" + device.link;
  }
}

}  // namespace sim
