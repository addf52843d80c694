#include "app/manager.h"

namespace {

std::unique_ptr<Tables> MakeTables(const std::string& programFolder) {
  auto tables = std::make_unique<Tables>();
  tables->ProgramFolder = programFolder;
  return tables;
}

}  // namespace

Manager::Manager(const Outside& outside, const std::string& programFolder)
    : tables_(MakeTables(programFolder)),
      logs_(*tables_, outside.files, outside.system),
      publication_(*tables_, outside.ports, outside.opc, logs_, outside.dialogs),
      configuration_(*tables_, outside.files, outside.ports, logs_, outside.notice),
      setup_(*tables_, configuration_),
      terminal_(engine_, *tables_, outside.terminals, outside.databases),
      virtualTerminal_(engine_, outside.terminals),
      engine_{*tables_,       outside.system, outside.events, outside.ports, outside.files,       outside.notice,
              logs_,          configuration_, publication_,   terminal_,     outside.startupForm, outside.mainForm,
              outside.dialogs} {
  configuration_.SetSetupScreen(&setup_);
}
