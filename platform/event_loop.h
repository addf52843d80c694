#pragma once

/// One of the three periodic timers. It never runs two ticks at the same time.
class PeriodicTimer {
 public:
  virtual ~PeriodicTimer() = default;
  /// Milliseconds between two ticks, at least 1.
  virtual void SetInterval(int milliseconds) = 0;
  virtual int Interval() const = 0;
  virtual void SetEnabled(bool enabled) = 0;
};

/// The message loop of the program and its timers.
class EventLoop {
 public:
  virtual ~EventLoop() = default;
  /// Lets pending events run: clicks, calls of other programs, the other two timers.
  virtual void DoEvents() = 0;
  virtual PeriodicTimer& Timer1() = 0;
  virtual PeriodicTimer& TxTimer() = 0;
  virtual PeriodicTimer& GDITimer() = 0;
};
