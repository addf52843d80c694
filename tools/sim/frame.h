#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "tools/sim/scale.h"

namespace sim {

/// How a device writes a reading to its line.
enum class FrameForm {
  Standard,  ///< STX, three status characters, six digits indicated, six digits tare, CR
  Short,     ///< the same without tare
  Ascii,     ///< text with the point in the data: weight, unit and three letters of state, CR LF
};

/// None if no form has this name.
std::optional<FrameForm> FrameFormOf(std::string_view name);

/// Largest reading that a form can carry with this many decimals, in units of the last place: the point and added
/// zeros take the place of digits.
std::int64_t LargestCounts(FrameForm form, int decimals);

/// Bytes of one frame. A reading that the form cannot carry is sent as out of range. The digits of a weight out of
/// range go as far as the form carries them, so that a receiver that overlooks the status shows it.
std::string EncodeFrame(FrameForm form, const Reading& reading, bool printRequest);

}  // namespace sim
