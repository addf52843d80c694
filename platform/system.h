#pragma once

#include <cstdint>
#include <string>

/// What the operating system says of itself, in the classic form: platform 1 or 2, major and minor version.
struct OsVersion {
  int platform;
  int major;
  int minor;
};

/// Clock, sleep, display size, operating system and the test for a running copy.
class System {
 public:
  virtual ~System() = default;

  virtual OsVersion GetVersionEx() const = 0;
  /// Index 0 gives the width of the display in pixels, 1 its height. A machine without a display counts
  /// as 1024 x 768.
  virtual int GetSystemMetrics(int index) const = 0;
  /// True if another copy of the program already works in the same program's folder.
  virtual bool PreviousInstance() = 0;

  /// Wall-clock time in whole seconds.
  virtual std::int64_t WallSeconds() const = 0;
  /// A clock that never runs backwards and is not set by anybody.
  virtual std::int64_t Milliseconds() const = 0;
  /// Seconds since midnight by local time, with their fraction.
  virtual double SecondsSinceMidnight() const = 0;
  /// Local date and time, `YYYY-MM-DD HH:MM:SS` whatever the locale.
  virtual std::string DateTimeText() const = 0;
  virtual void Sleep(int milliseconds) = 0;
};
