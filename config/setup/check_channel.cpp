#include <algorithm>
#include <map>
#include <optional>

#include "config/setup/check.h"
#include "core/fixed_tables.h"
#include "core/setting_limits.h"
#include "platform/run_time_error.h"

namespace {

struct ListSetting {
  const char* name;
  ChannelTable<std::int32_t> Tables::*table;
  int last;
  const char* use;  ///< what becomes of a number outside the list
};

constexpr ListSetting kLists[] = {
    {"ChanProtocol", &Tables::ChanProtocol, kLastProtocol, "the channel is not opened"},
    {"ChanConnectUsing", &Tables::ChanConnectUsing, 2, "nothing is connected"},
    {"ChanPort", &Tables::ChanPort, kLastPort, "the channel is not opened"},
    {"ChanPortSetup", &Tables::ChanPortSetup, kLastPortSetup, "the channel is not opened"},
    {"ChanDbDriver", &Tables::ChanDbDriver, 4, "no driver is chosen"},
    {"ChanPrimaryUnits", &Tables::ChanPrimaryUnits, 12, "the Units lamp stays dark"},
    {"ChanDecimalPlaces", &Tables::ChanDecimalPlaces, 6, "the decimal places are taken from the stream"},
};

std::string FileOf(int ch) { return "Tarvex-SCALE" + DisplayNumber(ch) + ".Cfg"; }

bool UsesSerialPort(const Tables& tables, int ch) {
  return tables.ChanEnabled[ch] == True && tables.ChanConnectUsing[ch] == ConnectUsing::SerialPort &&
         tables.ChanPort[ch] >= 0 && tables.ChanPort[ch] <= kLastPort;
}

/// What stands in the way of opening the port of channel `ch`, if that is so.
std::optional<Finding> PortFinding(int ch, const std::string& port, const PortStanding& standing, int manager) {
  using State = PortStanding::State;
  const auto finding = [&](const std::string& cure) {
    return Finding{FileOf(ch), "ChanPort", port + ": " + PortStandingText(standing), cure};
  };
  switch (standing.state) {
    case State::Present:
    case State::Unknown:
      return std::nullopt;
    case State::NotPresent:
      return finding("plug it in, or give the port its address in Tarvex-Ports.Cfg");
    case State::NotADevice:
      return finding("give the port the path of its device, or tcp://host:port, in Tarvex-Ports.Cfg");
    case State::NoPermission:
      return finding(standing.groupMayUse ? "have the user taken into that group, and log in again"
                                          : "let the device's group read and write it, and take the user into it");
    case State::InUse:
      if (standing.ours || standing.pid == manager) return std::nullopt;
      return finding("end that program, or choose another port");
  }
  return std::nullopt;
}

/// An enabled channel's port.
struct UsedPort {
  int ch;
  std::string address;
  std::string Name(const Tables& tables) const {
    return "COM" + std::to_string(tables.ChanPort[ch] + 1) + ", " + address;
  }
};

}  // namespace

Findings CheckChannel(const Tables& tables, int ch, const PortProbe& probe) {
  Findings findings;
  for (const ListSetting& list : kLists) {
    const std::int32_t value = (tables.*list.table)[ch];
    if (value >= 0 && value <= list.last) continue;
    findings.push_back({FileOf(ch), list.name, "found " + std::to_string(value) + ", so " + list.use,
                        "possible are 0 to " + std::to_string(list.last)});
  }
  const std::int32_t setup = tables.ChanPortSetup[ch];
  if (UsesSerialPort(tables, ch) && setup >= 0 && setup <= kLastPortSetup &&
      !probe.CanSet(tables.PortSettingsTable[setup])) {
    findings.push_back({FileOf(ch), "ChanPortSetup", "the serial port does not take " + tables.PortSettingsTable[setup],
                        "choose another speed"});
  }
  return findings;
}

Findings CheckPorts(const Tables& tables, const PortsOfMachine& ports) {
  Findings findings;
  std::vector<UsedPort> used;
  std::vector<std::string> addresses;
  for (int ch = 0; ch <= tables.MaxChannel; ++ch) {
    if (!UsesSerialPort(tables, ch)) continue;
    try {
      used.push_back({ch, ports.addressOf(tables.ChanPort[ch] + 1)});
      addresses.push_back(used.back().address);
    } catch (const RunTimeError& fault) {
      findings.push_back({FileOf(ch), "ChanPort", fault.Description(), "mend that line"});
    }
  }
  const std::vector<PortStanding> standings = ports.probe.LookAtAll(addresses);
  std::map<std::string, int> firstOf;
  for (std::size_t i = 0; i < used.size(); ++i) {
    const auto& [ch, address] = used[i];
    const std::string name = used[i].Name(tables);
    if (auto finding = PortFinding(ch, name, standings[i], ports.manager)) findings.push_back(std::move(*finding));
    const auto [first, isNew] = firstOf.emplace(standings[i].device, ch);
    if (isNew) continue;
    const std::pair<int, int> both[] = {{first->second, ch}, {ch, first->second}};
    for (const auto& [one, other] : both) {
      const auto used1 = std::find_if(used.begin(), used.end(), [&](const UsedPort& port) { return port.ch == one; });
      findings.push_back({FileOf(one), "ChanPort",
                          used1->Name(tables) + ", is also the port of channel " + DisplayNumber(other),
                          "give each channel a port of its own, or disable one"});
    }
  }
  return findings;
}
