#pragma once

#include <cstdint>
#include <memory>
#include <random>
#include <string>

#include "tools/sim/command.h"
#include "tools/sim/fault.h"
#include "tools/sim/frame.h"
#include "tools/sim/line.h"
#include "tools/sim/scale.h"
#include "tools/sim/transmitter.h"

namespace sim {

/// A weighing device as a plant file describes it.
struct DeviceSettings {
  int com = 0;  ///< COM number under which the plant reaches it
  std::string name;
  std::string link;  ///< path of the pseudo-terminal's link; empty for a device on TCP
  bool onTcp = false;
  int tcpPort = 0;  ///< 0 for any free one
  FrameForm form = FrameForm::Standard;
  double rate = 10;        ///< frames a second
  bool onRequest = false;  ///< a frame only for a print or weight command
  int baud = 9600;         ///< line speed; 0 sends a frame at once
  ScaleSettings scale;
  FaultPlan faults;
};

/// A scale on its line: frames at its rate and line speed, commands from the line, faults as planned.
class Device {
 public:
  /// Plugs the line. Raises `std::system_error`.
  Device(const DeviceSettings& settings, std::unique_ptr<Line> line, std::uint32_t seed);

  /// Brings the device to `now`, seconds since the plant started; times never go back.
  void Run(double now);

  const DeviceSettings& Settings() const { return settings_; }
  Line& Wire() { return *line_; }
  const Line& Wire() const { return *line_; }
  Scale& Platform() { return scale_; }
  FaultPlan& Faults() { return settings_.faults; }
  const Transmitter& Sender() const { return transmitter_; }
  /// Why the line could not be plugged back; empty if it could. It is tried again once a second.
  const std::string& Trouble() const { return trouble_; }

 private:
  bool On(Fault fault, double now) const { return settings_.faults.On(fault, now); }
  void KeepPlugged(double now);
  void PassTime(double now, bool talks);
  void Obey(const Command& command);
  void SendFrame(double now);
  std::string Garbage();

  DeviceSettings settings_;
  std::unique_ptr<Line> line_;
  Scale scale_;
  CommandReader commands_;
  Transmitter transmitter_;
  std::mt19937 random_;
  double nextFrame_ = 0;
  double nextPlug_ = 0;
  bool printWanted_ = false;
  bool weightWanted_ = false;
  std::string trouble_;
};

}  // namespace sim
