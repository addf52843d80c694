#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// The answer to a command is its code + 1000 at most, and has to fit the 16 bits of `CCmdStat`.
inline constexpr std::int16_t kLargestCommandCode = 31767;

/// A client's side of the event of a `Device`.
class DeviceSink {
 public:
  virtual ~DeviceSink() = default;
  virtual void CUpdate() = 0;
};

/// The automation object of one channel: nine plain fields that anyone may read and write, and one method.
/// It does not know its channel.
class Device {
 public:
  std::string CDeviceDesc;
  std::int32_t CDeviceID = 0;  ///< free for clients
  std::int16_t CCmd = 0;       ///< command code
  double CCmdParm = 0;
  std::int16_t CCmdStat = 0;
  double CGross = 0;
  double CTare = 0;
  double CNet = 0;
  std::int16_t CScaleStat = 0;

  /// Raises `CUpdate` to every attached sink in turn before it returns. A sink may detach itself or others.
  void CDoUpdate();

  /// The sink must outlive its attachment.
  void Attach(DeviceSink& sink);
  void Detach(DeviceSink& sink);

 private:
  std::vector<DeviceSink*> sinks_;
};
