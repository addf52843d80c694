#include "diagnostics/refresh_rates.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "core/engine.h"
#include "core/error_trap.h"

namespace {

/// A position of the slider: it is the place of all values whose scan and drawing intervals and pauses lie below
/// the bounds, and puts its own values into the boxes. The last one is the place of everything else.
struct SliderRow {
  int intervalsBelow;
  int pausesBelow;
  RateValues values;
};

constexpr std::array<SliderRow, kSliderPositions> kSlider = {{
    {20, 2, {1, 0, 15, 1, 15, 0}},
    {40, 4, {25, 1, 15, 1, 25, 1}},
    {0, 0, {50, 5, 15, 1, 50, 5}},
}};

int CurrentValue(Engine& engine, const RateBox& box) {
  return box.timer ? (engine.events.*box.timer)().Interval() : engine.tables.*box.setting;
}

}  // namespace

RateValues OpenRefresh(Engine& engine) {
  RateValues values{};
  for (std::size_t box = 0; box < values.size(); ++box) {
    const RateBox& rate = kRateTable[box];
    values[box] = CurrentValue(engine, rate);
  }
  engine.tables.RefreshOpen = True;
  return values;
}

void CloseRefresh(Tables& tables) { tables.RefreshOpen = False; }

int SliderPosition(const RateValues& values) {
  const int interval = std::max(values[0], values[4]);
  const int pause = std::max(values[1], values[5]);
  for (int position = 0; position < kSliderPositions - 1; ++position) {
    const SliderRow& row = kSlider[static_cast<std::size_t>(position)];
    if (interval < row.intervalsBelow && pause < row.pausesBelow) return position;
  }
  return kSliderPositions - 1;
}

const RateValues& SliderValues(int position) {
  if (position < 0 || position >= kSliderPositions) RaiseSubscriptOutOfRange();
  return kSlider[static_cast<std::size_t>(position)].values;
}

int RateFromText(int box, std::string_view text, int otherwise) {
  if (box < 0 || box >= kRateBoxes) RaiseSubscriptOutOfRange();
  int value = 0;
  const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
  const RateBox& rate = kRateTable[box];
  if (fault == std::errc::result_out_of_range) return text.front() == '-' ? rate.lowest : rate.highest;
  if (fault != std::errc{} || end != text.data() + text.size()) return otherwise;
  return std::clamp(value, rate.lowest, rate.highest);
}

std::string RateMeaning(const RateValues& values, int channels) {
  const auto [scan, scanPause, sending, sendingPause, drawing, drawingPause] = values;
  const int period = std::max(scan, scanPause);  // a pause is a part of its tick, and so of the interval
  const int picture = channels * drawingPause;   // no tick comes between the channels of one picture
  const int cycle = std::max(drawing, picture + scanPause);
  const double scansInCycle = std::max(1.0, static_cast<double>(cycle - picture) / period);
  const double scans = std::min(1000.0 / period, 1000.0 * scansInCycle / cycle);
  const std::string rate = scans >= 2 ? std::to_string(static_cast<int>(scans)) + " scans a second"
                                      : "one scan in " + std::to_string(std::lround(1000 / scans)) + " ms";
  const int longest = std::max(period, picture + scanPause) + drawing + picture;
  return "At most " + rate + ". A change is on the screen after " + std::to_string(longest) + " ms at the longest.";
}

void UpdateRates(Engine& engine, const RateValues& values) {
  for (std::size_t box = 0; box < values.size(); ++box) {
    const RateBox& rate = kRateTable[box];
    if (!rate.read) continue;
    engine.tables.*rate.setting = values[box];
    if (rate.timer) (engine.events.*rate.timer)().SetInterval(values[box]);
  }
  ReportFault(engine, [&] { engine.configuration.CfgProc(CfgAction::WriteSystemFile, 0); });
}
