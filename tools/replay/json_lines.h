#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "tools/replay/replay.h"

/// A byte string as UTF-8: valid UTF-8 stays, any other text is taken as Latin-1.
std::string ToUtf8(std::string_view bytes);

/// One tick as an object: the channel's tables after the tick under their own names, and what the tick did.
nlohmann::ordered_json ToJson(const Replay& replay, const TickEvents& events);
