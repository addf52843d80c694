#pragma once

#include <QTimer>
#include <functional>

#include "platform/event_loop.h"

/// A periodic timer of Qt's event loop. A tick that becomes due while one runs is dropped, not nested.
class QtPeriodicTimer : public PeriodicTimer {
 public:
  QtPeriodicTimer();

  /// What a tick does. It may not raise.
  void OnTick(std::function<void()> tick) { tick_ = std::move(tick); }

  void SetInterval(int milliseconds) override;
  int Interval() const override;
  void SetEnabled(bool enabled) override;

 private:
  void Tick();

  QTimer timer_;
  std::function<void()> tick_;
  bool ticking_ = false;
};

/// Runs an action in one of the next rounds of the message loop; may be called from any thread, also before the loop
/// runs. Needs a `QCoreApplication`.
void RunInMessageLoop(std::function<void()> action);

/// The message loop of the program that owns a `QCoreApplication`; it must exist before this does.
class QtEventLoop : public EventLoop {
 public:
  void DoEvents() override;
  QtPeriodicTimer& Timer1() override { return timer1_; }
  QtPeriodicTimer& TxTimer() override { return txTimer_; }
  QtPeriodicTimer& GDITimer() override { return gdiTimer_; }

 private:
  QtPeriodicTimer timer1_;
  QtPeriodicTimer txTimer_;
  QtPeriodicTimer gdiTimer_;
};
