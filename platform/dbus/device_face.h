#pragma once

#include <memory>

#include "platform/dbus/bus_face.h"
#include "publish/device_objects.h"

/// `/org/tarvex/Device/<index>` on the bus: the nine fields of the shared object as properties, `CDoUpdate` and
/// `CUpdate`. The object itself is created when a client or the program first uses it.
class DeviceFace : private DeviceSink {
 public:
  DeviceFace(DeviceObjects& objects, BusLink& link, int index);
  ~DeviceFace() override;

  const std::string& Path() const { return face_.Path(); }
  int Register(sd_bus* bus);
  /// Announces what is marked, see `BusFace`.
  void Announce() { face_.Announce(); }
  /// Announces fields that the program has written, bits of `DeviceField`.
  void AnnounceFields(unsigned fields);
  /// Marks fields that a client has written.
  void MarkForLater(unsigned fields) { face_.MarkForLater(fields); }

  /// The object behind the face.
  Device& Object();

 private:
  void CUpdate() override;

  DeviceObjects& objects_;
  int index_;
  BusFace face_;
  std::shared_ptr<Device> device_;  ///< null until the first use
};
