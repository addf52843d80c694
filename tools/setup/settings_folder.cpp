#include "tools/setup/settings_folder.h"

#include <cstdio>
#include <filesystem>
#include <vector>

#include "config/channel_file.h"
#include "config/opc_servers_file.h"
#include "core/fixed_tables.h"

namespace {

std::unique_ptr<Tables> TablesOf(const std::string& folder) {
  std::error_code ignored;
  if (!std::filesystem::is_directory(folder, ignored)) {
    throw SetupToolFault("There is no program's folder " + folder +
                         "; start the manager once, or name one with --home");
  }
  auto tables = std::make_unique<Tables>();
  tables->ProgramFolder = folder;
  tables->MaxChannel = kChannels - 1;
  FillFixedTables(*tables);
  return tables;
}

void Note(const RunTimeError& fault) { std::fprintf(stderr, "note: %s\n", fault.Description().c_str()); }

}  // namespace

SettingsFolder::SettingsFolder(const std::string& folder)
    : tables_(TablesOf(folder)),
      system_(folder),
      log_(*tables_, files_, system_),
      configuration_(*tables_, files_, ports_, log_, notice_),
      model_(*tables_, configuration_) {
  configuration_.SetSetupScreen(&model_);
  model_.OnFault([](const RunTimeError& fault) { Note(fault); });
  try {
    addresses_.Load(disk_, folder);
  } catch (const RunTimeError& fault) {
    portsFault_ = fault.Description();
  }
}

PortsOfMachine SettingsFolder::Ports() {
  return {.addressOf = [this](int comNumber) { return addresses_.AddressOf(comNumber); },
          .probe = probe_,
          .manager = LockHolder(Folder())};
}

void SettingsFolder::ReadChannel(int ch) { configuration_.CfgProc(CfgAction::ReadChannelFile, ch); }

void SettingsFolder::ReadProtocol(int proto) {
  configuration_.CfgProc(CfgAction::ReadFormatFile, proto);
  if (const auto& fault = tables_->ProtoFault[proto]) throw RunTimeError(*fault);
}

void SettingsFolder::ReadOpcServerOf(int ch) {
  ReadOpcServer(*tables_, files_, tables_->ChanOpcServerName[ch], tables_->ChanOpcNodeName[ch]);
}

/// A damaged format can be mended, and its channel switched off: it is told, and what could be read is shown.
void SettingsFolder::ReadProtocolToShow(int proto) {
  try {
    ReadProtocol(proto);
  } catch (const RunTimeError& fault) {
    Note(fault);
  }
}

void SettingsFolder::OpenChannel(int ch) {
  model_.Begin(ch);
  ReadChannel(ch);
  model_.SetLoading(true);
  configuration_.CfgProc(CfgAction::TablesToScreen, ch);
  const std::int32_t proto = tables_->ChanProtocol[ch];
  if (!ProtocolName(proto).empty()) {
    ReadProtocolToShow(proto);
    configuration_.CfgProc(CfgAction::ProtocolToScreen, proto);
  }
  model_.SetLoading(false);
}

void SettingsFolder::OpenProtocol(int proto) {
  ReadProtocolToShow(proto);
  model_.Begin(0);
  model_.SetIndex({Control::cb, 3}, proto);
}

void SettingsFolder::WriteChannel(int ch) {
  configuration_.CfgProc(CfgAction::ScreenToTables, ch);
  configuration_.CfgProc(CfgAction::WriteChannelFile, ch);
  Write();
}

void SettingsFolder::WriteProtocol(int proto) {
  configuration_.CfgProc(CfgAction::ScreenToProtocol, proto);
  configuration_.CfgProc(CfgAction::WriteFormatFile, proto);
  ReadProtocol(proto);  // what cannot be read back is not written
  Write();
}

void SettingsFolder::Write() {
  std::vector<std::pair<std::string, std::string>> before;
  try {
    for (const auto& [path, content] : files_.Written()) {
      std::string old = disk_.Read(path);
      if (old == content) continue;
      disk_.Replace(path, content);
      before.emplace_back(path, std::move(old));
    }
  } catch (const RunTimeError&) {
    for (const auto& [path, content] : before) disk_.Replace(path, content);
    throw;
  }
}
