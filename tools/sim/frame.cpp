#include "tools/sim/frame.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace sim {

namespace {

constexpr char kStx = '\x02';
constexpr unsigned kAlwaysSet = 1U << 5;
constexpr int kNoRoomForASign = 5;  ///< decimals with which the six places of a weight are all taken

struct FormName {
  std::string_view name;
  FrameForm form;
};

constexpr FormName kForms[] = {
    {"standard", FrameForm::Standard}, {"short", FrameForm::Short}, {"ascii", FrameForm::Ascii}};

/// Increment as status character A carries it: 1, 2, 3 for counts by 1, 2, 5.
unsigned IncrementCode(int countBy) { return countBy == 5 ? 3 : static_cast<unsigned>(countBy); }

char StatusA(const Reading& r) {
  return static_cast<char>(kAlwaysSet | IncrementCode(r.countBy) << 3 | static_cast<unsigned>(r.decimals + 2));
}

char StatusB(const Reading& r) {
  unsigned bits = kAlwaysSet;
  if (r.net) bits |= 1U << 0;
  if (r.indicated < 0) bits |= 1U << 1;
  if (r.outOfRange) bits |= 1U << 2;
  if (r.motion) bits |= 1U << 3;
  if (r.kilograms) bits |= 1U << 4;
  return static_cast<char>(bits);
}

char StatusC(bool printRequest) { return static_cast<char>(kAlwaysSet | (printRequest ? 1U << 3 : 0U)); }

/// Counts without their sign, as six digits.
std::string SixDigits(std::int64_t counts, std::int64_t largest) {
  const std::string digits = std::to_string(std::min<std::int64_t>(std::llabs(counts), largest));
  return std::string(6 - digits.size(), '0') + digits;
}

bool Fits(FrameForm form, const Reading& r) {
  const std::int64_t largest = LargestCounts(form, r.decimals);
  if (std::llabs(r.indicated) > largest) return false;
  if (form == FrameForm::Ascii) return true;
  return r.tare <= largest && !(r.indicated < 0 && r.decimals == kNoRoomForASign);
}

std::string AsciiFrame(const Reading& r, bool printRequest) {
  std::array<char, 16> weight{};
  std::snprintf(weight.data(), weight.size(), "%8.*f", std::max(0, r.decimals),
                static_cast<double>(r.indicated) * std::pow(10.0, -r.decimals));
  std::string frame = r.outOfRange ? "  ------" : weight.data();
  frame += r.kilograms ? " kg " : " lb ";
  frame += r.net ? 'N' : 'G';
  frame += r.outOfRange ? 'O' : r.motion ? 'M' : ' ';
  frame += printRequest ? 'P' : ' ';
  return frame + "\r\n";
}

}  // namespace

std::optional<FrameForm> FrameFormOf(std::string_view name) {
  for (const FormName& known : kForms) {
    if (known.name == name) return known.form;
  }
  return std::nullopt;
}

std::int64_t LargestCounts(FrameForm form, int decimals) {
  if (decimals == -2) return form == FrameForm::Ascii ? 99'999 : 9'999;
  if (form == FrameForm::Ascii) return decimals == 0 ? 9'999'999 : 999'999;
  return decimals == 0 ? 999'999 : 99'999;
}

std::string EncodeFrame(FrameForm form, const Reading& reading, bool printRequest) {
  Reading shown = reading;
  shown.outOfRange = reading.outOfRange || !Fits(form, reading);
  if (form == FrameForm::Ascii) return AsciiFrame(shown, printRequest);
  const std::int64_t largest = LargestCounts(form, shown.decimals);
  std::string frame = {kStx, StatusA(shown), StatusB(shown), StatusC(printRequest)};
  frame += SixDigits(shown.indicated, largest);
  if (form == FrameForm::Standard) frame += SixDigits(shown.tare, largest);
  return frame + '\r';
}

}  // namespace sim
