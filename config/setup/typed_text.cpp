#include "config/setup/typed_text.h"

#include <algorithm>

#include "config/setup/status_grid.h"

namespace {

constexpr std::string_view kDigitsOnly = "This field takes digits only";
constexpr std::string_view kNoQuotes = "The settings files put texts in double quotes, so that a text cannot hold one";
constexpr std::string_view kNoLineEnds = "The text has to stay on one line";
constexpr std::string_view kTooLong = "The field holds no more characters";

bool IsDigit(char character) { return character >= '0' && character <= '9'; }

bool ContinuesCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

std::string_view RefusalOf(const FieldRow& row, char character) {
  if (row.digitsOnly && !IsDigit(character)) return kDigitsOnly;
  if (character == '"') return kNoQuotes;
  if (character == '\r' || character == '\n' || character == '\0') return kNoLineEnds;
  return {};
}

}  // namespace

TypedText TakeTyped(const FieldRow& row, std::string_view typed) {
  TypedText taken;
  std::size_t characters = 0;
  for (char character : typed) {
    const std::string_view refusal = RefusalOf(row, character);
    if (!refusal.empty()) {
      taken.refusal = refusal;
      continue;
    }
    if (!ContinuesCharacter(character)) ++characters;
    if (row.limit > 0 && characters > row.limit) {
      taken.refusal = kTooLong;
      break;
    }
    taken.text += character;
  }
  return taken;
}

bool TakesKey(const FieldRow& row, int keyCode) {
  if (!row.digitsOnly) return true;
  if (keyCode >= KeyCode::Digit0 && keyCode <= KeyCode::Digit9) return true;
  constexpr int kMoving[] = {KeyCode::Back,  KeyCode::Tab,  KeyCode::Return, KeyCode::Escape,
                             KeyCode::End,   KeyCode::Home, KeyCode::Left,   KeyCode::Up,
                             KeyCode::Right, KeyCode::Down, KeyCode::Delete};
  return std::find(std::begin(kMoving), std::end(kMoving), keyCode) != std::end(kMoving);
}
