#pragma once

#include <array>
#include <memory>

#include "core/tables.h"
#include "publish/device_objects.h"

/// The program's side of the `Device` objects: it writes the fields, hands the command state to the objects and
/// takes it from them on `CUpdate`.
class Automation {
 public:
  explicit Automation(Tables& tables);
  ~Automation();
  Automation(const Automation&) = delete;
  Automation& operator=(const Automation&) = delete;

  DeviceObjects& Objects() { return objects_; }
  void SetWatcher(DeviceFieldWatcher* watcher) { watcher_ = watcher; }

  /// Binds `Device0` to `Device31`; further calls change nothing.
  void BindDevices();
  /// Writes one field of the channel's object, without an event. Kinds are those of `SetVal`: 1 gross, 2 tare,
  /// 3 net, 6 status word, 10 description; any other kind, or a channel above 31, does nothing.
  void UpdateActiveX(int kind, int ch);
  /// Hands the command state to the object, announces the fields and raises `CUpdate`.
  /// Raises 6 if a value does not fit 16 bits.
  void CallDeviceUpdateMethod(int ch);
  /// Tells the watcher which fields were written since the last time; nothing if there are none.
  void AnnounceFields(int ch);

 private:
  struct Handler;

  Tables& tables_;
  DeviceObjects objects_;
  std::array<std::unique_ptr<Handler>, kChannels> handlers_;
  ChannelTable<unsigned> written_;
  DeviceFieldWatcher* watcher_ = nullptr;
};
