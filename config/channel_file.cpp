#include "config/channel_file.h"

#include <utility>
#include <vector>

#include "config/cfg_line.h"
#include "core/fixed_tables.h"
#include "core/setting_limits.h"

namespace {

template <int Row>
CfgCell OpcTag(Tables& tables, int ch, int) {
  return &tables.ChanOpcTag[Row][ch];
}

template <auto Member>
constexpr int kLastRowOf = std::remove_reference_t<decltype(std::declval<Tables&>().*Member)>::Size() - 1;

constexpr int kLastUnits = kLastRowOf<&Tables::UnitsTable>;
constexpr int kLastDecimalPlaces = kLastRowOf<&Tables::DecimalMaskTable>;

constexpr std::size_t kLongestText = 1024;

constexpr CfgFieldRow kChannelLine[] = {
    {"ChanProtocol", SettingOf<&Tables::ChanProtocol>, 2, 0, kLastProtocol},
    {"ChanConnectUsing", SettingOf<&Tables::ChanConnectUsing>, 0},
    {"ChanPort", SettingOf<&Tables::ChanPort>, 0, 0, kLastPort},
    {"ChanPortSetup", SettingOf<&Tables::ChanPortSetup>, 33, 0, kLastPortSetup},
    {"ChanXonXoff", SettingOf<&Tables::ChanXonXoff>, false},
    {"ChanDeviceID", SettingOf<&Tables::ChanDeviceID>, ""},
    {"ChanDeviceDesc", SettingOf<&Tables::ChanDeviceDesc>, "SCALE %N"},
    {"ChanDbDriver", SettingOf<&Tables::ChanDbDriver>, 0},
    {"ChanOtherDriver", SettingOf<&Tables::ChanOtherDriver>, ""},
    {"ChanOpcNodeName", SettingOf<&Tables::ChanOpcNodeName>, ""},
    {"ChanOpcServerName", SettingOf<&Tables::ChanOpcServerName>, "OPC.DELTAV.1"},
    {"ChanAsciiLogName", SettingOf<&Tables::ChanAsciiLogName>, "%F/WtData-SCALE%N.Txt"},
    {"ChanAsciiLog", SettingOf<&Tables::ChanAsciiLog>, false},
    {"ChanEnabled", SettingOf<&Tables::ChanEnabled>, false},
    {"ChanBidirectional", SettingOf<&Tables::ChanBidirectional>, false},
    {"ChanOpcEnabled", SettingOf<&Tables::ChanOpcEnabled>, false},
    {"ChanPollForData", SettingOf<&Tables::ChanPollForData>, false},
    {"ChanAuditLog", SettingOf<&Tables::ChanAuditLog>, true},
    {"ChanVirtualTerminal", SettingOf<&Tables::ChanVirtualTerminal>, false},
    {"ChanInteractiveDbErrors", SettingOf<&Tables::ChanInteractiveDbErrors>, false},
    {"ChanDdeServer", SettingOf<&Tables::ChanDdeServer>, false},
    {"ChanRefresh", SettingOf<&Tables::ChanRefresh>, 30},
    {"ChanTxDelay", SettingOf<&Tables::ChanTxDelay>, 12},
    {"ChanTimeout", SettingOf<&Tables::ChanTimeout>, 50},
    {"ChanOpcTag row 0", OpcTag<0>, "SCALE_%N/GROSS.CV"},
    {"ChanOpcTag row 1", OpcTag<1>, "SCALE_%N/TARE.CV"},
    {"ChanOpcTag row 2", OpcTag<2>, "SCALE_%N/NET.CV"},
    {"ChanOpcTag row 3", OpcTag<3>, "SCALE_%N/SCALESTAT.CV"},
    {"ChanOpcTag row 4", OpcTag<4>, "SCALE_%N/CMD.CV"},
    {"ChanOpcTag row 5", OpcTag<5>, "SCALE_%N/CMDPARM.CV"},
    {"ChanOpcTag row 6", OpcTag<6>, "SCALE_%N/CMDSTAT.CV"},
    {"ChanPrimaryUnits", SettingOf<&Tables::ChanPrimaryUnits>, 0, 0, kLastUnits},
    {"ChanDecimalPlaces", SettingOf<&Tables::ChanDecimalPlaces>, 0, 0, kLastDecimalPlaces},
    {"ChanDataMap", SettingOf<&Tables::ChanDataMap>, false},
};

}  // namespace

std::string ChannelFilePath(const Tables& tables, int ch) {
  if (ch < 0 || ch >= tables.ChanProtocol.Size()) RaiseSubscriptOutOfRange();
  return PathInProgramFolder(tables, "\\Tarvex-SCALE" + DisplayNumber(ch) + ".Cfg");
}

void ReadChannelFile(Tables& tables, Files& files, Log& log, int ch) {
  const std::string path = ChannelFilePath(tables, ch);
  std::string content = files.OpenAndRead(path);
  const bool lost = content.empty() && tables.ChanEnabledInFile[ch] == True;
  tables.ChanSettingsLost[ch] = AsBoolean(lost);
  if (content.empty()) {
    RestoreChannelDefaults(tables, files, ch);
    content = files.OpenAndRead(path);
  }
  CfgReader reader(content, path);
  CfgRecord record(kLongestText);
  do {
    record.Clear();
    record.Read(reader, kChannelLine, tables, ch);
  } while (!reader.AtEnd());
  record.Commit();
  tables.ChanEnabledInFile[ch] = tables.ChanEnabled[ch];
  if (lost) {
    log.WriteLog(LogType::Error, path + " was empty or gone: channel " + DisplayNumber(ch) +
                                     ", which was enabled, has its default settings and is disabled now");
  }
  std::vector<std::string> remarks = record.Remarks();
  if (remarks == tables.ChanFileRemarks[ch]) return;  // the file is read again and again while its device is missing
  tables.ChanFileRemarks[ch] = std::move(remarks);
  for (const std::string& remark : tables.ChanFileRemarks[ch]) log.WriteLog(LogType::Error, remark);
}

void WriteChannelFile(Tables& tables, Files& files, int ch) {
  CfgWriter writer;
  WriteCfgLine(writer, kChannelLine, tables, ch);
  files.Replace(ChannelFilePath(tables, ch), writer.Content());
  tables.ChanEnabledInFile[ch] = tables.ChanEnabled[ch];
}

void RestoreChannelDefaults(Tables& tables, Files& files, int ch) {
  RestoreCfgDefaults(kChannelLine, tables, ch);
  WriteChannelFile(tables, files, ch);
}
