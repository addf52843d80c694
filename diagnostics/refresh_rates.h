#pragma once

#include <array>
#include <string>
#include <string_view>

#include "core/tables.h"
#include "core/timer_limits.h"
#include "platform/event_loop.h"

struct Engine;

inline constexpr int kRateBoxes = 6;
inline constexpr int kSliderPositions = 3;

/// Milliseconds in the text boxes `tVal(0)` to `tVal(5)` of `frmRefresh`.
using RateValues = std::array<int, kRateBoxes>;

/// One of the boxes: the column and the row it stands in, and the setting behind it.
struct RateBox {
  std::string_view column;
  std::string_view row;
  std::int32_t Tables::*setting;
  PeriodicTimer& (EventLoop::*timer)();  ///< the timer whose interval it is; null for a pause
  int lowest;
  int highest;
  bool read;  ///< `cmdUpdate` takes it
};

/// The pause of the TxTimer is shown and kept in the system file, but never read from its box.
inline constexpr RateBox kRateTable[kRateBoxes] = {
    {" Rx ", "Int.", &Tables::Timer1Interval, &EventLoop::Timer1, kShortestInterval, kLongestInterval, true},
    {" Rx ", "Idle", &Tables::Timer1Sleep, nullptr, 0, kLongestPause, true},
    {" Tx ", "Int.", &Tables::TxTimerInterval, &EventLoop::TxTimer, kShortestInterval, kLongestInterval, true},
    {" Tx ", "Idle", &Tables::TxTimerSleep, nullptr, 0, kLongestPause, false},
    {" GDI ", "Int.", &Tables::GDITimerInterval, &EventLoop::GDITimer, kShortestInterval, kLongestInterval, true},
    {" GDI ", "Idle", &Tables::GDITimerSleep, nullptr, 0, kLongestPause, true},
};

/// `cmdRefresh`: the values that the boxes start with. From now on the scan shows its measured rates.
RateValues OpenRefresh(Engine& engine);
/// `cmdClose` and `cmdSimpleClose`.
void CloseRefresh(Tables& tables);

/// Where the slider stands for these values: 0 fastest, 2 least load.
int SliderPosition(const RateValues& values);
/// What a position of the slider, 0 to 2, puts into the boxes; raises 9 outside.
const RateValues& SliderValues(int position);

/// The number typed into a box, brought inside the box's limits; `otherwise` if it is no number.
int RateFromText(int box, std::string_view text, int otherwise);

/// What the values come to, for an operator: ticks a second, and how long a change at a device may take to the screen.
std::string RateMeaning(const RateValues& values, int channels);

/// `cmdUpdate`: takes the values, gives the timers their new intervals at once and saves the system file. A file
/// that cannot be written is told to the operator; the settings then hold for this run.
void UpdateRates(Engine& engine, const RateValues& values);
