#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "platform/event_loop.h"
#include "platform/system.h"

/// A machine whose clock and state are what its user sets: for replays, benchmarks and tests.
class HandTurnedSystem : public System {
 public:
  explicit HandTurnedSystem(std::string now = {}) : dateTime(std::move(now)) {}

  OsVersion version{2, 5, 0};
  int width = 1024;  ///< of the display, pixels
  int height = 768;
  bool previousInstance = false;
  std::int64_t second = 0;
  std::int64_t millisecond = 0;  ///< of the clock that never runs backwards
  double midnightSeconds = 0;    ///< seconds since midnight
  std::string dateTime;          ///< "YYYY-MM-DD HH:MM:SS"

  OsVersion GetVersionEx() const override { return version; }
  int GetSystemMetrics(int index) const override { return index == 0 ? width : height; }
  bool PreviousInstance() override { return previousInstance; }
  std::int64_t WallSeconds() const override { return second; }
  std::int64_t Milliseconds() const override { return millisecond; }
  double SecondsSinceMidnight() const override { return midnightSeconds; }
  std::string DateTimeText() const override { return dateTime; }
  void Sleep(int) override {}
};

class HandTurnedTimer : public PeriodicTimer {
 public:
  int interval = 15;
  bool enabled = false;

  void SetInterval(int milliseconds) override { interval = milliseconds; }
  int Interval() const override { return interval; }
  void SetEnabled(bool on) override { enabled = on; }
};

/// Timers that keep what they are told; their user makes the ticks.
class HandTurnedEvents : public EventLoop {
 public:
  HandTurnedTimer timer1, txTimer, gdiTimer;
  std::function<void()> onDoEvents;

  void DoEvents() override {
    if (onDoEvents) onDoEvents();
  }
  PeriodicTimer& Timer1() override { return timer1; }
  PeriodicTimer& TxTimer() override { return txTimer; }
  PeriodicTimer& GDITimer() override { return gdiTimer; }
};
