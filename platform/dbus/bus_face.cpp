#include "platform/dbus/bus_face.h"

#include <array>

int BusFace::Register(sd_bus* bus, const sd_bus_vtable* table, void* self) {
  marked_ = 0;
  signal_ = nullptr;
  return sd_bus_add_object_vtable(bus, nullptr, path_.c_str(), interface_, table, self);
}

void BusFace::MarkForLater(unsigned properties) {
  Mark(properties);
  link_.RequestFlush();
}

void BusFace::Announce() {
  if (marked_ == 0 && signal_ == nullptr) return;
  if (link_.Bus() == nullptr || link_.Congested()) return;
  if (marked_ != 0) {
    std::array<const char*, 16> names{};  // ends in a null
    std::size_t count = 0;
    for (std::size_t bit = 0; bit < properties_.size(); ++bit) {
      if ((marked_ & (1U << bit)) != 0) names[count++] = properties_[bit];
    }
    sd_bus_emit_properties_changed_strv(link_.Bus(), path_.c_str(), interface_, const_cast<char**>(names.data()));
    marked_ = 0;
  }
  if (signal_ != nullptr) {
    sd_bus_emit_signal(link_.Bus(), path_.c_str(), interface_, signal_, nullptr);
    signal_ = nullptr;
  }
  link_.Sent();
}
