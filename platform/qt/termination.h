#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

/// Turns SIGTERM, SIGINT and SIGHUP into a call from the event loop, outside any signal handler, so that the program
/// can end in order. At most one object of this class exists at a time.
class Termination {
 public:
  /// Raises a `std::system_error` if the process has no descriptor left.
  explicit Termination(std::function<void()> onSignal);
  ~Termination();
  Termination(const Termination&) = delete;
  Termination& operator=(const Termination&) = delete;

 private:
  std::unique_ptr<QSocketNotifier> notifier_;
};
