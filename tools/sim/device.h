#pragma once

#include <cstdint>
#include <memory>
#include <random>
#include <string>

#include "tools/sim/fault.h"
#include "tools/sim/frame.h"
#include "tools/sim/line.h"
#include "tools/sim/scale.h"

/// A weighing device as a plant file describes it.
struct DeviceSettings {
  int com = 0;  ///< COM number under which the plant reaches it
  std::string name;
  std::string link;  ///< path of the pseudo-terminal's link; empty for a TCP device
  int tcpPort = -1;  ///< -1: no TCP device; 0: any free port
  FrameForm form = FrameForm::Standard;
  double rate = 10;        ///< frames a second
  bool onRequest = false;  ///< a frame only for a print command
  int baud = 9600;         ///< line speed; 0 sends a frame at once
  ScaleSettings scale;
  FaultPlan faults;
};

/// A scale on its line: frames at its rate and line speed, commands from the line, faults as planned.
class Device {
 public:
  Device(const DeviceSettings& settings, std::unique_ptr<Line> line, std::uint32_t seed);

  /// Brings the device to `now`, seconds since the plant started. Raises `std::system_error` if the line cannot be
  /// plugged.
  void Run(double now);

  const DeviceSettings& Settings() const { return settings_; }
  std::string Address() const { return line_->Address(); }
  Scale& Platform() { return scale_; }
  FaultPlan& Faults() { return settings_.faults; }
  long FramesSent() const { return framesSent_; }

 private:
  void TakeCommands();
  void Obey(const std::string& command);
  void QueueFrame(bool printRequest);
  void SendAtLineSpeed(double now);
  std::string Garbage();

  DeviceSettings settings_;
  std::unique_ptr<Line> line_;
  Scale scale_;
  std::mt19937 random_;
  double now_ = 0;
  double nextFrame_ = 0;
  double credit_ = 0;     ///< bytes that the line speed allows now
  double holdUntil_ = 0;  ///< a split write goes on then
  std::string command_;
  std::string unsent_;
  bool frameBegun_ = false;  ///< part of what is unsent has left already
  long framesSent_ = 0;
};
