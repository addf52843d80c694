#include "publish/device_objects.h"

const std::shared_ptr<Device>& DeviceObjects::At(int index) {
  if (index < 0 || index >= objects_.Size()) {
    throw RunTimeError(ErrorNumber::SubscriptOutOfRange,
                       "Subscript out of range: there is no device " + std::to_string(index) + ", they are 0 to 32");
  }
  std::shared_ptr<Device>& object = objects_[index];
  if (!object) object = std::make_shared<Device>();
  return object;
}
