#include "config/setup/check.h"

#include <cstdio>

#include "config/channel_file.h"
#include "config/opc_servers_file.h"
#include "core/fixed_tables.h"
#include "core/setting_limits.h"
#include "tools/setup/verbs.h"

namespace {

/// Reads a file; what it raises is a finding like any other.
template <typename Step>
bool Reads(Findings& findings, const std::string& file, const Step& step) {
  try {
    step();
    return true;
  } catch (const RunTimeError& fault) {
    findings.push_back({file, "the file", fault.Description(), "mend it, or open and save it on the setup screen"});
    return false;
  }
}

/// What the file of rights lets whom do; nothing without one.
void PrintDatabaseRights(const Tables& tables) {
  if (tables.DatabaseRightsSet == False) return;
  for (const DatabaseRight& right : tables.DatabaseRights) {
    std::printf("Tarvex-Database.Cfg: channel %s may %s %s\n", DisplayNumber(right.ch).c_str(),
                right.write ? "read and write" : "read", right.path.c_str());
  }
  std::printf("Tarvex-Database.Cfg: any other use of a database is refused\n");
}

void Append(Findings& findings, const Findings& more) { findings.insert(findings.end(), more.begin(), more.end()); }

void CheckOneProtocol(SettingsFolder& settings, int proto, bool used, Findings& findings) {
  if (proto == 0) return;
  const Tables& tables = settings.Store();
  const std::string file = tables.ProtoFileName[proto].substr(1);
  if (!Reads(findings, file, [&] { settings.ReadProtocol(proto); })) return;
  if (tables.ProtoMaxStream[proto] == 48 && tables.ProtoStatusCount[proto] <= 0 && tables.ProtoTerminator[proto] == 0) {
    if (used)
      findings.push_back({file, "the file", "it holds no format", "describe the device in it, or choose another"});
    return;
  }
  Append(findings, CheckProtocol(tables, proto));
}

}  // namespace

int Check(const std::string& folder, const Words& given) {
  Words words = given;
  const Target target = TakeTarget(words);
  if (!words.empty()) throw SetupToolFault("check does not know \"" + words.front() + "\"");
  SettingsFolder settings(folder);
  const Tables& tables = settings.Store();
  const PortsOfMachine ports = settings.Ports();
  Findings findings;
  if (!settings.PortsFault().empty()) {
    findings.push_back({"Tarvex-Ports.Cfg", "the file", settings.PortsFault(), "mend that line"});
  }
  Table<Boolean, kLastProtocol + 1> used{};
  for (int ch = 0; ch < kChannels; ++ch) {
    const bool wanted =
        target.kind == Target::Kind::All || (target.kind == Target::Kind::Channel && target.number == ch);
    Findings ofChannel;
    const std::string file = "Tarvex-SCALE" + DisplayNumber(ch) + ".Cfg";
    const bool read = Reads(ofChannel, file, [&] { settings.ReadChannel(ch); });
    if (!wanted) continue;
    if (read) Append(ofChannel, CheckChannel(tables, ch, ports.probe));
    if (read && tables.ChanOpcEnabled[ch] == True) Reads(ofChannel, file, [&] { settings.ReadOpcServerOf(ch); });
    Append(findings, ofChannel);
    const std::int32_t proto = tables.ChanProtocol[ch];
    if (read && tables.ChanEnabled[ch] == True && proto >= 0 && proto <= kLastProtocol) used[proto] = True;
  }
  for (const Finding& finding : CheckPorts(tables, ports)) {
    const bool ofTarget = finding.file == "Tarvex-SCALE" + DisplayNumber(target.number) + ".Cfg";
    if (target.kind == Target::Kind::All || (target.kind == Target::Kind::Channel && ofTarget)) {
      findings.push_back(finding);
    }
  }
  for (int proto = 0; proto <= kLastProtocol; ++proto) {
    const bool wanted = target.kind == Target::Kind::All || used[proto] == True ||
                        (target.kind == Target::Kind::Protocol && target.number == proto);
    if (wanted) CheckOneProtocol(settings, proto, used[proto] == True, findings);
  }
  if (target.kind == Target::Kind::All) {
    Reads(findings, "Tarvex-Database.Cfg", [&] { settings.ReadDatabaseRights(); });
    PrintDatabaseRights(tables);
  }
  for (const Finding& finding : findings) std::printf("%s\n", finding.Line().c_str());
  if (findings.empty()) std::printf("Nothing questionable was found.\n");
  return findings.empty() ? 0 : 1;
}
