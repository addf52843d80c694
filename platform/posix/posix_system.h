#pragma once

#include <string>

#include "platform/posix/descriptor.h"
#include "platform/posix/monotonic_clock.h"
#include "platform/system.h"

/// Size of a display in pixels.
struct DisplaySize {
  int width = 1024;
  int height = 768;
};

/// The operating system's own clock, sleep and locks. It counts as platform 2, version 5.0, so that all 32
/// channels run.
class PosixSystem : public System {
 public:
  /// `programFolder` is what a second copy is recognised by; `display` is 1024 x 768 where there is none.
  explicit PosixSystem(std::string programFolder, DisplaySize display = {});

  OsVersion GetVersionEx() const override { return {2, 5, 0}; }
  int GetSystemMetrics(int index) const override;
  /// The first copy keeps the folder locked until it ends, however it ends; the programs it starts do not inherit
  /// the lock. Where the folder cannot be locked at all, no other copy can be told. Raises 53, 70 or 75 if there
  /// is no such folder.
  bool PreviousInstance() override;
  /// True if a copy works in `folder` now. Holds the lock for the moment of the look alone, together with others that
  /// look. Raises 53, 70 or 75 if there is no such folder.
  static bool CopyRunsIn(const std::string& folder);
  std::int64_t WallSeconds() const override;
  std::int64_t Milliseconds() const override { return MonotonicMilliseconds(); }
  double SecondsSinceMidnight() const override;
  std::string DateTimeText() const override;
  void Sleep(int milliseconds) override;

 private:
  std::string programFolder_;
  DisplaySize display_;
  Descriptor lock_;
  mutable std::int64_t textSecond_ = -1;
  mutable std::string text_;
};
