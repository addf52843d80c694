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

/// Address of the channel's port; nothing if the ports file has closed it, which is a finding of its own.
std::optional<std::string> AddressOf(const Tables& tables, int ch, const PortsOfMachine& ports) {
  try {
    return ports.addressOf(tables.ChanPort[ch] + 1);
  } catch (const RunTimeError&) {
    return std::nullopt;
  }
}

std::string CureOf(PortState state) {
  switch (state) {
    case PortState::NotPresent:
      return "plug it in, or give the port its address in Tarvex-Ports.Cfg";
    case PortState::NoPermission:
      return "have the user taken into that group, and log in again";
    default:
      return "end that program, or choose another port";
  }
}

bool IsExpected(const std::string& holder, const PortsOfMachine& ports) {
  return std::any_of(ports.expectedHolders.begin(), ports.expectedHolders.end(),
                     [&](const std::string& expected) { return holder.starts_with(expected + " "); });
}

void CheckPort(const Tables& tables, int ch, const PortsOfMachine& ports, Findings& findings) {
  const std::string name = "COM" + std::to_string(tables.ChanPort[ch] + 1);
  try {
    const std::string address = ports.addressOf(tables.ChanPort[ch] + 1);
    const PortCondition found = ports.probe.Look(address);
    const std::string described = Describe(found);
    if (described.empty() || (found.state == PortState::InUse && IsExpected(found.detail, ports))) return;
    findings.push_back({FileOf(ch), "ChanPort", name + ", " + address + ": " + described, CureOf(found.state)});
  } catch (const RunTimeError& fault) {
    findings.push_back({FileOf(ch), "ChanPort", fault.Description(), "mend that line"});
  }
}

}  // namespace

Findings CheckChannel(const Tables& tables, int ch, const PortsOfMachine& ports) {
  Findings findings;
  for (const ListSetting& list : kLists) {
    const std::int32_t value = (tables.*list.table)[ch];
    if (value >= 0 && value <= list.last) continue;
    findings.push_back({FileOf(ch), list.name, "found " + std::to_string(value) + ", so " + list.use,
                        "possible are 0 to " + std::to_string(list.last)});
  }
  if (!UsesSerialPort(tables, ch)) return findings;
  CheckPort(tables, ch, ports, findings);
  const std::int32_t setup = tables.ChanPortSetup[ch];
  if (setup >= 0 && setup <= kLastPortSetup && !ports.takesSettings(tables.PortSettingsTable[setup])) {
    findings.push_back({FileOf(ch), "ChanPortSetup", "the serial port does not take " + tables.PortSettingsTable[setup],
                        "choose another speed"});
  }
  return findings;
}

Findings CheckSharedPorts(const Tables& tables, const PortsOfMachine& ports) {
  Findings findings;
  std::map<std::string, int> firstOf;
  for (int ch = 0; ch <= tables.MaxChannel; ++ch) {
    if (!UsesSerialPort(tables, ch)) continue;
    const auto address = AddressOf(tables, ch, ports);
    if (!address) continue;
    const auto [first, isNew] = firstOf.emplace(*address, ch);
    if (isNew) continue;
    findings.push_back({FileOf(ch), "ChanPort",
                        "COM" + std::to_string(tables.ChanPort[ch] + 1) + ", " + *address +
                            ", is also the port of channel " + DisplayNumber(first->second),
                        "give each channel a port of its own, or disable one"});
  }
  return findings;
}
