#pragma once

#include <string>
#include <vector>

#include "tools/replay/replay.h"

/// A capture of tests/data. Its comments tell the device, and "# replay:" the options under which it is replayed;
/// paths in them are relative to that folder. "# good:", if there is one, is a frame in hex that must be shown
/// whatever came before it.
struct RecordedCapture {
  std::string name;  ///< without ".capture"
  ReplaySetup setup;
  std::string good;  ///< bytes, empty if there is none

  explicit RecordedCapture(std::string captureName);
  std::string Path() const;
  std::string ExpectedPath() const;
  /// The bytes of all ticks.
  std::vector<std::string> Arrivals() const;
};

/// Names of all captures of tests/data, sorted.
std::vector<std::string> CaptureNames();
