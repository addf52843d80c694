#include "app/opc_hooks.h"

#include <string>
#include <utility>

#include "config/opc_servers_file.h"
#include "core/engine.h"
#include "core/error_trap.h"

OpcUaControls::Hooks OpcHooksOf(std::function<Engine&()> engine, Files& files) {
  return {
      .certificateFolder = [engine] { return engine().tables.ProgramFolder + "/Tarvex-OPC"; },
      .serverOf = [engine, &files](
                      const std::string& server,
                      const std::string& node) { return ReadOpcServer(engine().tables, files, server, node); },
      .report =
          [engine](int ch, const std::string& text) {
            Engine& parts = engine();
            ReportFault(parts, [&] { parts.log.WriteLog(LogType::Opc, "Device:" + std::to_string(ch) + "; " + text); });
          },
  };
}
