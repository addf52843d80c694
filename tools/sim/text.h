#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace sim {

/// The text without blanks at both ends; CR and tab count as blanks.
std::string_view Strip(std::string_view text);
/// Its words, divided by blanks.
std::vector<std::string_view> Words(std::string_view text);
/// Its pieces between `separator`, each without blanks at its ends.
std::vector<std::string_view> Pieces(std::string_view text, char separator);
/// The finite number that the whole text is.
std::optional<double> Number(std::string_view text);
/// The whole number that the whole text is.
std::optional<int> WholeNumber(std::string_view text);
/// A time of 0 seconds or more, behind which an "s" may stand.
std::optional<double> Seconds(std::string_view text);

}  // namespace sim
