#include "terminal/audit_log.h"

#include "core/engine.h"
#include "core/error_trap.h"

void WriteAuditLog(Engine& engine, int ch, int type, std::string_view text) {
  if (engine.tables.ChanAuditLog[ch] == False) return;
  ReportFault(engine, [&] { engine.log.WriteLog(type, text); });
}
