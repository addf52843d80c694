#pragma once

#include <array>
#include <memory>

#include "core/tables.h"
#include "publish/device.h"

/// Fields of a `Device` as bits. The program writes all of them but `DeviceID`.
namespace DeviceField {
inline constexpr unsigned DeviceDesc = 1U << 0;
inline constexpr unsigned Cmd = 1U << 1;
inline constexpr unsigned CmdParm = 1U << 2;
inline constexpr unsigned CmdStat = 1U << 3;
inline constexpr unsigned Gross = 1U << 4;
inline constexpr unsigned Tare = 1U << 5;
inline constexpr unsigned Net = 1U << 6;
inline constexpr unsigned ScaleStat = 1U << 7;
inline constexpr unsigned DeviceID = 1U << 8;
}  // namespace DeviceField

/// Told once a visit which fields of `DeviceObjects(index)` the program has written in it, before `CUpdate` if the
/// visit raises it.
class DeviceFieldWatcher {
 public:
  virtual ~DeviceFieldWatcher() = default;
  virtual void FieldsWritten(int index, unsigned fields) = 0;
};

/// The 33 objects 0 to 32, each created on first use and shared by all clients. Objects 0 to 31 belong to the
/// channels; 32 is a spare that feeds no channel.
class DeviceObjects {
 public:
  /// Raises 9 outside 0 to 32.
  const std::shared_ptr<Device>& At(int index);

 private:
  Table<std::shared_ptr<Device>, 33> objects_;
};

/// The class that clients create to reach the devices. It has no state of its own.
class Connector {
 public:
  explicit Connector(DeviceObjects& objects) : objects_(objects) {}
  /// The shared object of channel `index`. Raises 9 outside 0 to 32, and touches no object then.
  std::shared_ptr<::Device> Device(std::int16_t index) { return objects_.At(index); }

 private:
  DeviceObjects& objects_;
};
