#include "tools/sim/plant_keys.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <string>

#include "tools/sim/text.h"

namespace sim {

namespace {

constexpr double kLongest = 86400;  ///< seconds
constexpr double kHeaviest = 1e7;

template <typename Value>
std::string Range(std::string_view kind, Value least, Value most) {
  std::ostringstream range;
  range << kind << " from " << least << " to " << most;
  return range.str();
}

double ToNumber(std::string_view text, double least, double most) {
  const auto value = Number(text);
  if (!value || *value < least || *value > most) throw BadValue(Range("a number", least, most));
  return *value;
}

int ToWhole(std::string_view text, int least, int most) {
  const auto value = WholeNumber(text);
  if (!value || *value < least || *value > most) throw BadValue(Range("a whole number", least, most));
  return *value;
}

bool ToChoice(std::string_view text, std::string_view no, std::string_view yes) {
  if (text != no && text != yes) throw BadValue(std::string(no) + " or " + std::string(yes));
  return text == yes;
}

double ToSeconds(std::string_view text, double least) {
  const auto value = Seconds(text);
  if (!value || *value < least || *value > kLongest) throw BadValue(Range("seconds", least, kLongest));
  return *value;
}

/// "1500 for 40 over 30".
LoadStep ToLoad(std::string_view text) {
  const auto words = Words(text);
  const bool over = words.size() == 5 && words[3] == "over";
  if ((words.size() != 3 && !over) || words[1] != "for") {
    throw BadValue("WEIGHT for SECONDS [over SECONDS], ...");
  }
  return {ToNumber(words[0], -kHeaviest, kHeaviest), ToSeconds(words[2], 0.1), over ? ToSeconds(words[4], 0) : 0};
}

std::vector<LoadStep> ToLoads(std::string_view text) {
  std::vector<LoadStep> loads;
  for (const std::string_view step : Pieces(text, ',')) loads.push_back(ToLoad(step));
  return loads;
}

/// "SQL statement", "DATE days", "LOT" or "TEST".
Transaction ToTransaction(std::string_view text) {
  const std::string_view word = text.substr(0, text.find(' '));
  const std::string rest(Strip(text.substr(word.size())));
  if (word == "SQL" && !rest.empty()) return {Transaction::Kind::Sql, rest};
  if (word == "DATE") return {Transaction::Kind::Date, rest};
  if (word == "LOT" && rest.empty()) return {Transaction::Kind::Lot};
  if (word == "TEST" && rest.empty()) return {Transaction::Kind::Test};
  throw BadValue("SQL STATEMENT, DATE DAYS, LOT or TEST");
}

Transaction ToStatement(std::string_view text) {
  if (text.empty() || text.find('!') != text.npos) throw BadValue("a statement without \"!\"");
  return {Transaction::Kind::Sql, std::string(text)};
}

/// "silence every 60 for 10".
void SetFault(DeviceSettings& device, std::string_view value) {
  const auto words = Words(value);
  const auto fault = words.empty() ? std::nullopt : FaultOf(words[0]);
  if (!fault || words.size() != 5 || words[1] != "every" || words[3] != "for") {
    throw BadValue("silence, garbage, cut, split or unplug every SECONDS for SECONDS");
  }
  const double period = ToSeconds(words[2], 0.1);
  const double length = ToSeconds(words[4], 0.01);
  if (length > period) throw BadValue("a fault that is over before it comes again");
  device.faults.Repeat(*fault, period, length);
}

void SetForm(DeviceSettings& device, std::string_view value) {
  const auto form = FrameFormOf(value);
  if (!form) throw BadValue("standard, short or ascii");
  device.form = *form;
}

void SetTcp(DeviceSettings& device, std::string_view value) {
  device.onTcp = true;
  device.tcpPort = value == "any" ? 0 : ToWhole(value, 1, 65535);
}

std::string ToLink(std::string_view value) {
  const bool fullPath = value.starts_with('/') && !value.ends_with('/');
  const bool fileName = !value.empty() && value.find('/') == value.npos && value != "." && value != "..";
  if (!fullPath && !fileName) throw BadValue("a file name or a full path");
  return std::string(value);
}

void SetCountBy(DeviceSettings& device, std::string_view value) {
  if (value != "1" && value != "2" && value != "5") throw BadValue("1, 2 or 5");
  device.scale.countBy = value[0] - '0';
}

using P = PlantSettings;
using D = DeviceSettings;
using T = TerminalSettings;
using C = ClientSettings;
using V = std::string_view;

constexpr PlantKey kPlantKeys[] = {
    {"links", [](P& p, V v) { p.links = v; }},
    {"seed", [](P& p, V v) { p.seed = static_cast<std::uint32_t>(ToWhole(v, 0, 2000000000)); }},
};

constexpr DeviceKey kDeviceKeys[] = {
    {"name", [](D& d, V v) { d.name = v; }},
    {"com", [](D& d, V v) { d.com = ToWhole(v, 1, 68); }},
    {"link", [](D& d, V v) { d.link = ToLink(v); }},
    {"tcp", SetTcp},
    {"form", SetForm},
    {"mode", [](D& d, V v) { d.onRequest = ToChoice(v, "continuous", "request"); }},
    {"rate", [](D& d, V v) { d.rate = ToNumber(v, 0.1, 1000); }},
    {"baud", [](D& d, V v) { d.baud = ToWhole(v, 0, 4000000); }},
    {"units", [](D& d, V v) { d.scale.kilograms = ToChoice(v, "lb", "kg"); }},
    {"capacity", [](D& d, V v) { d.scale.capacity = ToNumber(v, 0.001, kHeaviest); }},
    {"decimals", [](D& d, V v) { d.scale.decimals = ToWhole(v, -2, 5); }},
    {"count by", SetCountBy},
    {"load", [](D& d, V v) { d.scale.load = ToLoads(v); }},
    {"phase", [](D& d, V v) { d.scale.phase = ToSeconds(v, 0); }},
    {"overshoot", [](D& d, V v) { d.scale.overshoot = ToNumber(v, 0, 0.9); }},
    {"settle", [](D& d, V v) { d.scale.settle = ToSeconds(v, 0.05); }},
    {"noise", [](D& d, V v) { d.scale.noise = ToNumber(v, 0, kHeaviest); }},
    {"tare", [](D& d, V v) { d.scale.tare = ToNumber(v, 0, kHeaviest); }},
    {"zero error", [](D& d, V v) { d.scale.zeroError = ToNumber(v, -kHeaviest, kHeaviest); }},
    {"fault", SetFault},
};

constexpr TerminalKey kTerminalKeys[] = {
    {"name", [](T& t, V v) { t.name = v; }},
    {"node", [](T& t, V v) { t.node = ToWhole(v, 1, 255); }},
    {"database", [](T& t, V v) { t.database = v; }},
    {"transaction", [](T& t, V v) { t.program.push_back(ToTransaction(v)); }},
    {"every", [](T& t, V v) { t.every = ToSeconds(v, 0); }},
    {"patience", [](T& t, V v) { t.patience = ToSeconds(v, 0.1); }},
    {"load", [](T& t, V v) { t.load = ToLoads(v); }},
    {"decimals", [](T& t, V v) { t.decimals = ToWhole(v, 0, 5); }},
};

constexpr ClientKey kClientKeys[] = {
    {"name", [](C& c, V v) { c.name = v; }},
    {"com", [](C& c, V v) { c.com = ToWhole(v, 1, 68); }},
    {"link", [](C& c, V v) { c.link = ToLink(v); }},
    {"database", [](C& c, V v) { c.database = v; }},
    {"transaction", [](C& c, V v) { c.program.push_back(ToStatement(v)); }},
    {"every", [](C& c, V v) { c.every = ToSeconds(v, 0); }},
    {"patience", [](C& c, V v) { c.patience = ToSeconds(v, 0.1); }},
};

template <typename Key, std::size_t size>
const Key* Find(const Key (&keys)[size], std::string_view name) {
  const auto* key = std::find_if(std::begin(keys), std::end(keys), [&](const Key& one) { return one.name == name; });
  return key == std::end(keys) ? nullptr : key;
}

}  // namespace

const PlantKey* FindPlantKey(std::string_view name) { return Find(kPlantKeys, name); }

const DeviceKey* FindDeviceKey(std::string_view name) { return Find(kDeviceKeys, name); }

const TerminalKey* FindTerminalKey(std::string_view name) { return Find(kTerminalKeys, name); }

const ClientKey* FindClientKey(std::string_view name) { return Find(kClientKeys, name); }

}  // namespace sim
