#pragma once

#include <string>
#include <string_view>

#include "config/setup/fields.h"

/// What becomes of a text that somebody types or pastes into a field.
struct TypedText {
  std::string text;          ///< what of it the field takes
  std::string_view refusal;  ///< why something was left out, for a tip; empty if all was taken
};

/// Applies what a field takes: its limit in characters, digits alone where it takes no more, no double quote, which the
/// settings files cannot carry, and no line end.
TypedText TakeTyped(const FieldRow& row, std::string_view typed);

/// False for a key that a number field does nothing on.
bool TakesKey(const FieldRow& row, int keyCode);
