#include "publish/device_objects.h"

const std::shared_ptr<Device>& DeviceObjects::At(int index) {
  std::shared_ptr<Device>& object = objects_[index];
  if (!object) object = std::make_shared<Device>();
  return object;
}
