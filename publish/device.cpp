#include "publish/device.h"

#include <algorithm>

void Device::CDoUpdate() {
  // A sink detached during the round leaves an empty place, so that the others keep theirs.
  const std::size_t attached = sinks_.size();
  for (std::size_t index = 0; index < attached && index < sinks_.size(); ++index) {
    if (sinks_[index] != nullptr) sinks_[index]->CUpdate();
  }
  std::erase(sinks_, nullptr);
}

void Device::Attach(DeviceSink& sink) { sinks_.push_back(&sink); }

void Device::Detach(DeviceSink& sink) {
  std::replace(sinks_.begin(), sinks_.end(), &sink, static_cast<DeviceSink*>(nullptr));
}
