#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "tools/sim/scale.h"

/// How a device writes a reading to its line.
enum class FrameForm {
  Standard,  ///< STX, three status characters, six digits indicated, six digits tare, CR
  Short,     ///< the same without tare
  Ascii,     ///< text with the point in the data: sign, weight, unit, mode and motion letters, CR LF
};

std::optional<FrameForm> FrameFormOf(std::string_view name);

/// Bytes of one frame. Out of range the digits are the last ones that can be shown.
std::string EncodeFrame(FrameForm form, const Reading& reading, bool printRequest);

/// Largest number of counts that a form can carry with this many decimals: the point takes a digit's place.
std::int64_t LargestCounts(FrameForm form, int decimals);
