#include "tools/sim/plant_file.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <sstream>

#include "tools/sim/plant_keys.h"
#include "tools/sim/text.h"

namespace sim {

namespace {

enum class Section { Plant, Scale, Terminal, Client };

struct SectionName {
  std::string_view title;
  Section section;
};

constexpr SectionName kSections[] = {
    {"[scale]", Section::Scale}, {"[terminal]", Section::Terminal}, {"[client]", Section::Client}};

/// Keys that may be given more than once.
constexpr std::string_view kRepeated[] = {"fault", "transaction"};

class PlantReader {
 public:
  explicit PlantReader(const std::string& fileName) : fileName_(fileName) {}

  void Take(std::string_view line) {
    ++line_;
    line = Strip(line);
    if (line.empty() || line.starts_with('#')) return;
    for (const SectionName& known : kSections) {
      if (line == known.title) return Begin(known.section);
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
    if (section_ == Section::Plant) throw PlantFileError(fileName_ + ": there is no [scale] in it");
    Check();
    return std::move(plant_);
  }

 private:
  [[noreturn]] void Fail(int line, const std::string& what) const {
    throw PlantFileError(fileName_ + ":" + std::to_string(line) + ": " + what);
  }

  void Begin(Section section) {
    Check();
    section_ = section;
    sectionLine_ = line_;
    keysSeen_.clear();
    if (section == Section::Scale) plant_.devices.emplace_back();
    if (section == Section::Terminal) plant_.terminals.emplace_back();
    if (section == Section::Client) plant_.clients.emplace_back();
  }

  bool SetIn(Section section, std::string_view name, std::string_view value) {
    const auto set = [&](const auto* key, auto&& settings) {
      if (key != nullptr) key->set(settings, value);
      return key != nullptr;
    };
    switch (section) {
      case Section::Plant:
        return set(FindPlantKey(name), plant_);
      case Section::Scale:
        return set(FindDeviceKey(name), plant_.devices.back());
      case Section::Terminal:
        return set(FindTerminalKey(name), plant_.terminals.back());
      case Section::Client:
        return set(FindClientKey(name), plant_.clients.back());
    }
    return false;
  }

  void Set(std::string_view name, std::string_view value) {
    const bool repeated = std::find(std::begin(kRepeated), std::end(kRepeated), name) != std::end(kRepeated);
    if (!repeated && !keysSeen_.insert(std::string(name)).second) {
      Fail(line_, "\"" + std::string(name) + "\" is given twice");
    }
    if (SetIn(section_, name, value)) return;
    if (section_ == Section::Plant && FindDeviceKey(name) != nullptr) {
      Fail(line_, "\"" + std::string(name) + "\" belongs below a [scale]");
    }
    if (FindPlantKey(name) != nullptr) Fail(line_, "\"" + std::string(name) + "\" belongs above the first [scale]");
    Fail(line_, "there is no key \"" + std::string(name) + "\"");
  }

  /// Looks at the section that ends here as a whole.
  void Check() {
    if (section_ == Section::Scale) CheckDevice(plant_.devices.back());
    if (section_ == Section::Terminal) CheckTerminal(plant_.terminals.back());
    if (section_ == Section::Client) CheckClient(plant_.clients.back());
  }

  void CheckTerminal(TerminalSettings& terminal) {
    if (terminal.node == 0) Fail(sectionLine_, "this terminal has no \"node\"");
    if (!nodes_.insert(terminal.node).second) {
      Fail(sectionLine_, "node " + std::to_string(terminal.node) + " is used twice");
    }
    if (terminal.name.empty()) terminal.name = "Terminal " + std::to_string(terminal.node);
  }

  void CheckClient(ClientSettings& client) {
    if (client.com == 0) Fail(sectionLine_, "this client has no \"com\"");
    TakeCom(client.com);
    if (client.program.empty()) Fail(sectionLine_, "this client has no \"transaction\"");
    if (client.name.empty()) client.name = "Client " + std::to_string(client.com);
    if (client.link.empty()) client.link = "client" + std::to_string(client.com);
    TakeLink(client.link);
  }

  void CheckDevice(DeviceSettings& device) {
    if (device.com == 0) Fail(sectionLine_, "this scale has no \"com\"");
    const std::string com = "COM" + std::to_string(device.com);
    TakeCom(device.com);
    if (device.onTcp && !device.link.empty()) {
      Fail(sectionLine_, com + " has a link and TCP; it can be on one line alone");
    }
    if (device.name.empty()) device.name = "Scale " + std::to_string(device.com);
    if (!device.onTcp && device.link.empty()) device.link = "scale" + std::to_string(device.com);
    if (!device.onTcp) TakeLink(device.link);
    CheckScale(com, device);
  }

  void TakeCom(int com) {
    if (!coms_.insert(com).second) Fail(sectionLine_, "COM" + std::to_string(com) + " is used twice");
  }

  void TakeLink(const std::string& link) {
    if (!links_.insert(link).second) Fail(sectionLine_, "the link \"" + link + "\" is used twice");
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
    Fail(sectionLine_, fault.str());
  }

  std::string fileName_;
  int line_ = 0;
  Section section_ = Section::Plant;
  int sectionLine_ = 0;  ///< where it begins
  PlantSettings plant_;
  std::set<std::string> keysSeen_;
  std::set<int> coms_, nodes_;
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

void PlaceLinks(PlantSettings& plant, const std::string& folder) {
  const auto place = [&](std::string& link) {
    if (!link.empty() && !link.starts_with('/')) link = folder + "/" + link;
  };
  for (DeviceSettings& device : plant.devices) place(device.link);
  for (ClientSettings& client : plant.clients) place(client.link);
}

}  // namespace sim
