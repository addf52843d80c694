#include "core/reload.h"

#include <string>
#include <tuple>
#include <type_traits>

#include "core/channel_state.h"
#include "core/engine.h"
#include "core/error_trap.h"
#include "core/fixed_tables.h"
#include "core/initialisation.h"
#include "core/offline.h"
#include "core/setting_limits.h"

namespace {

/// What the reading of a channel's file writes.
constexpr std::tuple kSettings{
    &Tables::ChanProtocol,     &Tables::ChanConnectUsing,    &Tables::ChanPort,
    &Tables::ChanPortSetup,    &Tables::ChanXonXoff,         &Tables::ChanDeviceID,
    &Tables::ChanDeviceDesc,   &Tables::ChanDbDriver,        &Tables::ChanOtherDriver,
    &Tables::ChanOpcNodeName,  &Tables::ChanOpcServerName,   &Tables::ChanAsciiLogName,
    &Tables::ChanAsciiLog,     &Tables::ChanEnabled,         &Tables::ChanBidirectional,
    &Tables::ChanOpcEnabled,   &Tables::ChanPollForData,     &Tables::ChanAuditLog,
    &Tables::ChanDdeServer,    &Tables::ChanVirtualTerminal, &Tables::ChanInteractiveDbErrors,
    &Tables::ChanRefresh,      &Tables::ChanTxDelay,         &Tables::ChanTimeout,
    &Tables::ChanPrimaryUnits, &Tables::ChanDecimalPlaces,   &Tables::ChanDataMap,
    &Tables::ChanSettingsLost};

/// The settings of one channel, to be put back.
class ChannelSettings {
 public:
  ChannelSettings(const Tables& tables, int ch) : ch_(ch) {
    Each([&](auto table, auto& kept) { kept = (tables.*table)[ch]; });
    for (int row = 0; row < kOpcTags; ++row) tags_[row] = tables.ChanOpcTag[row][ch];
  }
  void PutInto(Tables& tables) {
    Each([&](auto table, auto& kept) { (tables.*table)[ch_] = kept; });
    for (int row = 0; row < kOpcTags; ++row) tables.ChanOpcTag[row][ch_] = tags_[row];
  }

 private:
  template <typename... Elements>
  static std::tuple<Elements...> OneOfEach(const std::tuple<ChannelTable<Elements> Tables::*...>&);

  template <typename Step>
  void Each(const Step& step) {
    std::apply([&](auto... table) { std::apply([&](auto&... kept) { (step(table, kept), ...); }, values_); },
               kSettings);
  }

  int ch_;
  decltype(OneOfEach(kSettings)) values_;
  Table<std::string, kOpcTags> tags_;
};

[[noreturn]] void Refuse(const std::string& why) { throw RunTimeError(ErrorNumber::InvalidCall, why); }

void RequireOpenedChannels(const Tables& tables) {
  if (tables.Stopped == True) Refuse("The system is stopped; it reads its files when it is started again");
  if (tables.ChannelsInitialised == False) Refuse("The system is still opening its channels; try again in a moment");
}

void RefuseWhileEdited(const Tables& tables, const std::string& what) {
  Refuse(what + " is being edited on the setup screen of channel " + DisplayNumber(tables.EditedChannel) +
         "; leave it with Ok or Cancel first");
}

void ReadFormat(Engine& engine, int proto) {
  engine.configuration.CfgProc(CfgAction::ReadFormatFile, proto);
  if (const auto& fault = engine.tables.ProtoFault[proto]) throw RunTimeError(*fault);
}

/// Reads the file, and the format that it asks for unless that stands in the tables already.
void ReadSettings(Engine& engine, int ch, int protoBefore) {
  Tables& tables = engine.tables;
  engine.configuration.CfgProc(CfgAction::ReadChannelFile, ch);
  if (tables.ChanEnabled[ch] == False) return;
  if (const auto unusable = UnusableSetting(tables, ch)) throw RunTimeError(*unusable);
  const int proto = tables.ChanProtocol[ch];
  const bool stands = proto == protoBefore && proto <= kLastFormatReadAtStart && !tables.ProtoFault[proto];
  if (!stands) ReadFormat(engine, proto);
}

/// Under the settings that the channel ran with: they say where its weights have gone.
void CloseChannel(Engine& engine, int ch) {
  Tables& tables = engine.tables;
  if (tables.ChanConnected[ch] == True) MarkWeightsOld(engine, ch);
  engine.ports.Port(ch).Close();
  if (tables.ChanOpcEnabled[ch] == True) GoOnAfterFault([&] { engine.publisher.DisconnectOpc(ch); });
  tables.ChanTxQueue[ch].clear();  // meant for the device of before
  tables.ChanConnected[ch] = False;
  SetCaption(tables, ch, Caption::ReInitializing);
}

}  // namespace

void ReloadChannel(Engine& engine, int ch) {
  Tables& tables = engine.tables;
  RequireOpenedChannels(tables);
  if (ch < 0 || ch > tables.MaxChannel) {
    throw RunTimeError(ErrorNumber::SubscriptOutOfRange,
                       "There is no such channel: they are 1 to " + DisplayNumber(tables.MaxChannel));
  }
  if (ch == tables.EditedChannel) RefuseWhileEdited(tables, "The channel");

  ChannelSettings before(tables, ch);
  try {
    ReadSettings(engine, ch, tables.ChanProtocol[ch]);
  } catch (...) {
    before.PutInto(tables);
    throw;
  }
  ChannelSettings fromFile(tables, ch);
  before.PutInto(tables);
  CloseChannel(engine, ch);
  fromFile.PutInto(tables);
  tables.ChanFormatRefused[ch] = False;
  tables.ChanReopenPending[ch] = True;
  WriteActivity(engine, "Channel: " + DisplayNumber(ch) + "  Settings Read Again");
}

void ReloadProtocol(Engine& engine, int proto) {
  const Tables& tables = engine.tables;
  RequireOpenedChannels(tables);
  if (proto < 0 || proto > kLastProtocol) {
    throw RunTimeError(ErrorNumber::SubscriptOutOfRange,
                       "There is no such protocol: they are 0 to " + std::to_string(kLastProtocol));
  }
  const int edited = tables.EditedChannel;
  if (edited != kNoChannel && tables.ChanProtocol[edited] == proto) RefuseWhileEdited(tables, "The protocol");
  ReadFormat(engine, proto);
  WriteActivity(engine, "Protocol: " + std::to_string(proto) + "  Format Read Again");
}

void FindDecimalsAnew(Tables& tables, int proto) {
  for (int ch = 0; ch <= tables.MaxChannel; ++ch) {
    if (tables.ChanProtocol[ch] != proto) continue;
    tables.ChanStatusDecimals[ch] = False;
    tables.ChanDecimalsKnown[ch] = False;
  }
}
