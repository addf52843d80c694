#pragma once

#include <string_view>

struct Engine;

/// A line of log `type` about a database client with audit logging. A log that cannot be written is reported and holds
/// up nothing: a statement that has been executed must be answered, or its client would have it executed again.
void WriteAuditLog(Engine& engine, int ch, int type, std::string_view text);
