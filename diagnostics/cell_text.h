#pragma once

#include <cstdint>
#include <string>
#include <string_view>

struct Tables;

/// What a text cell of a row shows on every kind of weigh screen, `Item::Description` to `Item::StatusCaption`. A tare
/// whose number value is 0 is blank. Holds until the channel's text changes.
std::string_view TextOfCell(const Tables& tables, int ch, int item);

/// Repaints of one cell a second, which debug mode shows in place of the caption.
class RepaintRate {
 public:
  /// Counts a repaint at wall-clock second `now`. Gives the count of the second before, six digits.
  std::string_view Count(std::int64_t now);

 private:
  std::int32_t repaints_ = 0;
  std::int64_t second_ = 0;
  std::string text_;
};
