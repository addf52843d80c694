#pragma once

#include <string>
#include <string_view>

/// Finds one keyed value of a database client's line, `/KEY=value!`, in any case of the key. Without the key `result`
/// keeps what it had; without the `!` it becomes "Error:Invalid KEY". The value keeps its case and its blanks.
void ParseDBCmd(std::string_view line, std::string_view key, std::string& result);
