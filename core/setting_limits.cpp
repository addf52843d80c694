#include "core/setting_limits.h"

#include <string>

#include "core/fixed_tables.h"
#include "core/tables.h"

namespace {

struct Limit {
  const char* name;
  ChannelTable<std::int32_t> Tables::*setting;
  int last;
  bool ofSerialPort;
};

constexpr Limit kLimits[] = {
    {"ChanProtocol", &Tables::ChanProtocol, kLastProtocol, false},
    {"ChanPort", &Tables::ChanPort, kLastPort, true},
    {"ChanPortSetup", &Tables::ChanPortSetup, kLastPortSetup, true},
};

}  // namespace

std::optional<RunTimeError> UnusableSetting(const Tables& tables, int ch) {
  const bool serial = tables.ChanConnectUsing[ch] == ConnectUsing::SerialPort;
  for (const Limit& limit : kLimits) {
    const std::int32_t value = (tables.*limit.setting)[ch];
    if ((limit.ofSerialPort && !serial) || (value >= 0 && value <= limit.last)) continue;
    return RunTimeError(ErrorNumber::SubscriptOutOfRange,
                        "Subscript out of range: Tarvex-SCALE" + DisplayNumber(ch) + ".Cfg, " + limit.name +
                            ": found \"" + std::to_string(value) + "\", possible are 0 to " +
                            std::to_string(limit.last) + "; choose one in the setup of the channel");
  }
  return std::nullopt;
}
