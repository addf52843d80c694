#include <cstdio>

#include "core/fixed_tables.h"
#include "core/setting_limits.h"
#include "tools/setup/field_names.h"
#include "tools/setup/verbs.h"

namespace {

void Print(const SetupField& field, const char* note = "  (not used)") {
  const std::string name = PlainName(field);
  std::printf("  %-28s %-34s %s%s\n", name.c_str(), ShownValue(field).c_str(), NameOf(field).c_str(),
              field.enabled ? "" : note);
}

void ShowProtocol(SettingsFolder& settings, int proto) {
  const SetupFields& fields = settings.Model().Fields();
  std::printf("Protocol %d  %s  (%s)\n", proto, ProtocolName(proto).c_str(),
              settings.Store().ProtoFileName[proto].substr(1).c_str());
  for (const FieldId id : ProtocolFields()) {
    const bool ofCommand = id.control == Control::ckCmd || id.control == Control::tCmd ||
                           id.control == Control::tCmdName || id.control == Control::tCmdValue;
    const bool empty = fields.At(Control::tCmd, ofCommand ? id.element : 0).text.empty() &&
                       fields.At(Control::tCmdName, ofCommand ? id.element : 0).text.empty();
    if (!ofCommand || !empty) Print(fields.At(id), "  (fixed)");
  }
  const StatusGrid& grid = settings.Model().Grid();
  for (int row = 0; row < StatusGrid::kRows; ++row) {
    std::string line;
    bool any = false;
    for (int column = 0; column < StatusGrid::kColumns; ++column) {
      const std::string text = grid.At(row, column).value_or("");
      any = any || !text.empty();
      line += (column > 0 ? "|" : "") + text;
    }
    if (any) std::printf("  row(%d)=%s\n", row, line.c_str());
  }
}

}  // namespace

int Show(const std::string& folder, const Words& given) {
  Words words = given;
  const Target target = TakeTarget(words);
  if (!words.empty()) throw SetupToolFault("show does not know \"" + words.front() + "\"");
  SettingsFolder settings(folder);
  if (target.kind == Target::Kind::Protocol) {
    settings.OpenProtocol(target.number);
    ShowProtocol(settings, target.number);
    return 0;
  }
  if (target.kind == Target::Kind::All) {
    for (int ch = 0; ch < kChannels; ++ch) {
      try {
        settings.ReadChannel(ch);
      } catch (const RunTimeError& fault) {
        std::printf("%3s  %s\n", DisplayNumber(ch).c_str(), fault.Description().c_str());
        continue;
      }
      const Tables& tables = settings.Store();
      const std::string protocol = ProtocolName(tables.ChanProtocol[ch]);
      std::printf("%3s  %-8s  COM%-3d %-12s %-34s %s\n", DisplayNumber(ch).c_str(),
                  tables.ChanEnabled[ch] == True ? "enabled" : "disabled", tables.ChanPort[ch] + 1,
                  tables.ChanPortSetup[ch] >= 0 && tables.ChanPortSetup[ch] <= kLastPortSetup
                      ? tables.PortSettingsTable[tables.ChanPortSetup[ch]].c_str()
                      : "?",
                  protocol.empty() ? "?" : protocol.c_str(), tables.ChanDeviceDesc[ch].c_str());
    }
    return 0;
  }
  settings.OpenChannel(target.number);
  std::printf("Channel %s\n", DisplayNumber(target.number).c_str());
  for (const FieldId id : ChannelFields()) Print(settings.Model().Fields().At(id));
  const std::int32_t proto = settings.Store().ChanProtocol[target.number];
  if (proto > 0 && !ProtocolName(proto).empty()) ShowProtocol(settings, proto);
  return 0;
}
