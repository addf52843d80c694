#include "tools/sim/frame.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr char kStx = '\x02';
constexpr unsigned kAlwaysSet = 1U << 5;

struct FormName {
  std::string_view name;
  FrameForm form;
};

constexpr FormName kForms[] = {
    {"standard", FrameForm::Standard}, {"short", FrameForm::Short}, {"ascii", FrameForm::Ascii}};

/// Increment as status character A carries it: 1, 2, 3 for counts by 1, 2, 5.
unsigned IncrementCode(int countBy) { return countBy == 5 ? 3 : static_cast<unsigned>(countBy); }

char StatusA(const Reading& r) {
  const unsigned place = static_cast<unsigned>(std::clamp(r.decimals, -2, 5) + 2);
  return static_cast<char>(kAlwaysSet | IncrementCode(r.countBy) << 3 | place);
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

/// Counts as six digits. Tens and hundreds behind the last place are not sent: their zeros are the reader's to add.
std::string SixDigits(std::int64_t counts, std::int64_t largest) {
  std::array<char, 24> text{};
  std::snprintf(text.data(), text.size(), "%06lld",
                static_cast<long long>(std::min<std::int64_t>(std::llabs(counts), largest)));
  return text.data();
}

std::string AsciiFrame(const Reading& r, bool printRequest) {
  const int places = std::max(0, r.decimals);
  double weight = static_cast<double>(r.indicated);
  for (int place = 0; place < places; ++place) weight /= 10;
  for (int place = r.decimals; place < 0; ++place) weight *= 10;
  std::array<char, 64> text{};
  if (r.outOfRange) {
    std::snprintf(text.data(), text.size(), "  ------ %s %c%c", r.kilograms ? "kg" : "lb", r.net ? 'N' : 'G', 'O');
  } else {
    std::snprintf(text.data(), text.size(), "%8.*f %s %c%c", places, weight, r.kilograms ? "kg" : "lb",
                  r.net ? 'N' : 'G',
                  r.motion       ? 'M'
                  : printRequest ? 'P'
                                 : ' ');
  }
  return std::string(text.data()) + "\r\n";
}

}  // namespace

std::optional<FrameForm> FrameFormOf(std::string_view name) {
  for (const FormName& known : kForms) {
    if (known.name == name) return known.form;
  }
  return std::nullopt;
}

std::int64_t LargestCounts(FrameForm form, int decimals) {
  if (form == FrameForm::Ascii) return 9'999'999;
  if (decimals == -2) return 9'999;
  return decimals == 0 ? 999'999 : 99'999;
}

std::string EncodeFrame(FrameForm form, const Reading& reading, bool printRequest) {
  if (form == FrameForm::Ascii) return AsciiFrame(reading, printRequest);
  const std::int64_t largest = LargestCounts(form, reading.decimals);
  Reading shown = reading;
  if (std::llabs(reading.indicated) > largest || reading.tare > largest) shown.outOfRange = true;
  std::string frame = {kStx, StatusA(shown), StatusB(shown), StatusC(printRequest)};
  frame += SixDigits(shown.indicated, largest);
  if (form == FrameForm::Standard) frame += SixDigits(shown.tare, largest);
  frame += '\r';
  return frame;
}
