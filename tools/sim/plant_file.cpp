#include "tools/sim/plant_file.h"

#include <charconv>
#include <set>
#include <sstream>

namespace {

constexpr std::string_view kBlanks = " \t\r";

std::string_view Strip(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// A value that a key cannot take; the reader adds where it stands.
struct BadValue {
  std::string expected;
};

double ToNumber(std::string_view text, double least, double most) {
  double value = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
  if (read.ec != std::errc{} || read.ptr != text.data() + text.size() || !(value >= least && value <= most)) {
    std::ostringstream expected;
    expected << "a number from " << least << " to " << most;
    throw BadValue{expected.str()};
  }
  return value;
}

int ToWhole(std::string_view text, int least, int most) {
  const double value = ToNumber(text, least, most);
  if (value != static_cast<int>(value)) throw BadValue{"a whole number"};
  return static_cast<int>(value);
}

bool ToChoice(std::string_view text, std::string_view no, std::string_view yes) {
  if (text != no && text != yes) throw BadValue{"\"" + std::string(no) + "\" or \"" + std::string(yes) + "\""};
  return text == yes;
}

/// Splits `text` at `separator` into stripped pieces.
std::vector<std::string_view> Split(std::string_view text, char separator) {
  std::vector<std::string_view> pieces;
  for (;;) {
    const std::size_t at = text.find(separator);
    pieces.push_back(Strip(text.substr(0, at)));
    if (at == std::string_view::npos) return pieces;
    text.remove_prefix(at + 1);
  }
}

std::vector<std::string_view> Words(std::string_view text) {
  std::vector<std::string_view> words;
  for (std::string_view word : Split(text, ' ')) {
    if (!word.empty()) words.push_back(word);
  }
  return words;
}

/// "12400 for 20, 0 for 10": weights and the seconds they lie there.
void SetLoad(DeviceSettings& device, std::string_view value) {
  for (std::string_view step : Split(value, ',')) {
    const auto words = Words(step);
    if (words.size() != 3 || words[1] != "for") throw BadValue{"\"WEIGHT for SECONDS, ...\""};
    device.scale.load.push_back({ToNumber(words[0], -1e6, 1e7), ToNumber(words[2], 0.1, 86400)});
  }
}

/// "silence every 60 for 10", in seconds.
void SetFault(DeviceSettings& device, std::string_view value) {
  const auto words = Words(value);
  const auto fault = words.empty() ? std::nullopt : FaultOf(words[0]);
  if (!fault || words.size() != 5 || words[1] != "every" || words[3] != "for") {
    throw BadValue{"\"silence, garbage, cut, split or unplug every SECONDS for SECONDS\""};
  }
  device.faults.Repeat(*fault, ToNumber(words[2], 0.1, 86400), ToNumber(words[4], 0.01, 86400));
}

void SetForm(DeviceSettings& device, std::string_view value) {
  const auto form = FrameFormOf(value);
  if (!form) throw BadValue{"\"standard\", \"short\" or \"ascii\""};
  device.form = *form;
}

struct Key {
  std::string_view name;
  void (*set)(DeviceSettings&, std::string_view);
};

using D = DeviceSettings;
using V = std::string_view;

const Key kKeys[] = {
    {"name", [](D& d, V v) { d.name = v; }},
    {"com", [](D& d, V v) { d.com = ToWhole(v, 1, 68); }},
    {"link", [](D& d, V v) { d.link = v; }},
    {"tcp", [](D& d, V v) { d.tcpPort = ToWhole(v, 0, 65535); }},
    {"form", SetForm},
    {"mode", [](D& d, V v) { d.onRequest = ToChoice(v, "continuous", "request"); }},
    {"rate", [](D& d, V v) { d.rate = ToNumber(v, 0.1, 1000); }},
    {"baud", [](D& d, V v) { d.baud = ToWhole(v, 0, 4000000); }},
    {"units", [](D& d, V v) { d.scale.kilograms = ToChoice(v, "lb", "kg"); }},
    {"capacity", [](D& d, V v) { d.scale.capacity = ToNumber(v, 0.001, 1e8); }},
    {"decimals", [](D& d, V v) { d.scale.decimals = ToWhole(v, -2, 5); }},
    {"count by", [](D& d, V v) { d.scale.countBy = ToWhole(v, 1, 5); }},
    {"load", SetLoad},
    {"overshoot", [](D& d, V v) { d.scale.overshoot = ToNumber(v, 0, 0.9); }},
    {"settle", [](D& d, V v) { d.scale.settle = ToNumber(v, 0.05, 600); }},
    {"noise", [](D& d, V v) { d.scale.noise = ToNumber(v, 0, 1e6); }},
    {"tare", [](D& d, V v) { d.scale.tare = ToNumber(v, 0, 1e7); }},
    {"zero error", [](D& d, V v) { d.scale.zeroError = ToNumber(v, -1e6, 1e6); }},
    {"fault", SetFault},
};

const Key* FindKey(std::string_view name) {
  for (const Key& key : kKeys) {
    if (key.name == name) return &key;
  }
  return nullptr;
}

class PlantReader {
 public:
  PlantReader(const std::string& fileName, const std::string& linksFolder)
      : fileName_(fileName), linksFolder_(linksFolder) {}

  void Take(std::string_view line) {
    ++lineNumber_;
    line = Strip(line.substr(0, line.find('#')));
    if (line.empty()) return;
    if (line == "[scale]") {
      Finish();
      devices_.emplace_back();
      return;
    }
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos)
      Fail("expected \"[scale]\" or \"key = value\", found \"" + std::string(line) + "\"");
    if (devices_.empty()) Fail("a key stands before the first [scale]");
    const std::string_view name = Strip(line.substr(0, equals));
    const Key* key = FindKey(name);
    if (key == nullptr) Fail("there is no key \"" + std::string(name) + "\"");
    try {
      key->set(devices_.back(), Strip(line.substr(equals + 1)));
    } catch (const BadValue& bad) {
      Fail(std::string(name) + ": expected " + bad.expected);
    }
  }

  std::vector<DeviceSettings> End() {
    Finish();
    return std::move(devices_);
  }

 private:
  [[noreturn]] void Fail(const std::string& what) const {
    throw PlantFileError(fileName_ + ":" + std::to_string(lineNumber_) + ": " + what);
  }

  /// Checks the section that ends here.
  void Finish() {
    if (devices_.empty()) return;
    DeviceSettings& device = devices_.back();
    if (device.com == 0) Fail("the scale above has no \"com\"");
    if (!coms_.insert(device.com).second) Fail("COM" + std::to_string(device.com) + " is used twice");
    if (device.tcpPort < 0) {
      if (device.link.empty()) device.link = "scale" + std::to_string(device.com);
      if (device.link.front() != '/') device.link = linksFolder_ + "/" + device.link;
    }
    double largest = static_cast<double>(LargestCounts(device.form, device.scale.decimals));
    for (int place = 0; place < device.scale.decimals; ++place) largest /= 10;
    for (int place = device.scale.decimals; place < 0; ++place) largest *= 10;
    if (device.scale.capacity > largest) {
      std::ostringstream what;
      what << "the capacity of COM" << device.com << " is beyond " << largest
           << ", the largest weight that its frames can carry";
      Fail(what.str());
    }
  }

  std::string fileName_;
  std::string linksFolder_;
  int lineNumber_ = 0;
  std::vector<DeviceSettings> devices_;
  std::set<int> coms_;
};

}  // namespace

std::vector<DeviceSettings> ReadPlant(std::string_view text, const std::string& fileName,
                                      const std::string& linksFolder) {
  PlantReader reader(fileName, linksFolder);
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    reader.Take(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  return reader.End();
}

std::vector<DeviceSettings> PlainPlant(int scales, double rate, const std::string& linksFolder) {
  std::vector<DeviceSettings> devices;
  for (int com = 1; com <= scales; ++com) {
    DeviceSettings device;
    device.com = com;
    device.name = "Scale " + std::to_string(com);
    device.link = linksFolder + "/scale" + std::to_string(com);
    device.rate = rate;
    device.baud = 0;
    device.scale.capacity = 9000;
    device.scale.load = {{100.0 + 10 * com, 2}, {8000.0 - 10 * com, 2}};
    device.scale.settle = 2;
    devices.push_back(device);
  }
  return devices;
}
