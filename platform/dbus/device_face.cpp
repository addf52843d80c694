#include "platform/dbus/device_face.h"

#include <array>
#include <bit>
#include <cstdint>

#include "platform/dbus/bus_text.h"

namespace {

constexpr const char* kInterface = "org.tarvex.Device";
/// By bit of `DeviceField`.
constexpr std::array<const char*, 9> kFieldNames = {"CDeviceDesc", "CCmd", "CCmdParm",   "CCmdStat", "CGross",
                                                    "CTare",       "CNet", "CScaleStat", "CDeviceID"};

int Append(sd_bus_message* reply, const std::string& text) {
  return sd_bus_message_append_basic(reply, 's', BusText(text).c_str());
}
int Append(sd_bus_message* reply, std::int32_t number) { return sd_bus_message_append_basic(reply, 'i', &number); }
int Append(sd_bus_message* reply, std::int16_t number) { return sd_bus_message_append_basic(reply, 'n', &number); }
int Append(sd_bus_message* reply, double number) { return sd_bus_message_append_basic(reply, 'd', &number); }

int Read(sd_bus_message* value, std::string& text) {
  const char* sent = nullptr;
  const int result = sd_bus_message_read_basic(value, 's', &sent);
  if (result > 0) text = sent;
  return result;
}
int Read(sd_bus_message* value, std::int32_t& number) { return sd_bus_message_read_basic(value, 'i', &number); }
int Read(sd_bus_message* value, std::int16_t& number) { return sd_bus_message_read_basic(value, 'n', &number); }
int Read(sd_bus_message* value, double& number) { return sd_bus_message_read_basic(value, 'd', &number); }

template <auto Field>
int Get(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void* face, sd_bus_error* error) {
  return AnswerFaults(error, [&] { return Append(reply, static_cast<DeviceFace*>(face)->Object().*Field); });
}

template <auto Field, unsigned Bit>
int Set(sd_bus*, const char*, const char*, const char*, sd_bus_message* value, void* face, sd_bus_error* error) {
  return AnswerFaults(error, [&] {
    auto& self = *static_cast<DeviceFace*>(face);
    const int result = Read(value, self.Object().*Field);
    if (result > 0) self.MarkForLater(Bit);
    return result;
  });
}

int DoUpdate(sd_bus_message* call, void* face, sd_bus_error* error) {
  return AnswerFaults(error, [&] {
    static_cast<DeviceFace*>(face)->Object().CDoUpdate();
    return sd_bus_reply_method_return(call, nullptr);
  });
}

template <auto Field, unsigned Bit>
constexpr sd_bus_vtable Property(const char* type) {
  return SD_BUS_WRITABLE_PROPERTY(kFieldNames[std::countr_zero(Bit)], type, (Get<Field>), (Set<Field, Bit>), 0,
                                  SD_BUS_VTABLE_PROPERTY_EMITS_CHANGE);
}

// The bus refuses a value of another type before it gets here; nothing is stored then.
constexpr sd_bus_vtable kDevice[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("CDoUpdate", nullptr, nullptr, DoUpdate, 0),
    Property<&Device::CDeviceDesc, DeviceField::DeviceDesc>("s"),
    Property<&Device::CDeviceID, DeviceField::DeviceID>("i"),
    Property<&Device::CCmd, DeviceField::Cmd>("n"),
    Property<&Device::CCmdParm, DeviceField::CmdParm>("d"),
    Property<&Device::CCmdStat, DeviceField::CmdStat>("n"),
    Property<&Device::CGross, DeviceField::Gross>("d"),
    Property<&Device::CTare, DeviceField::Tare>("d"),
    Property<&Device::CNet, DeviceField::Net>("d"),
    Property<&Device::CScaleStat, DeviceField::ScaleStat>("n"),
    SD_BUS_SIGNAL("CUpdate", nullptr, 0),
    SD_BUS_VTABLE_END,
};

}  // namespace

DeviceFace::DeviceFace(DeviceObjects& objects, BusLink& link, int index)
    : objects_(objects),
      index_(index),
      face_(link, "/org/tarvex/Device/" + std::to_string(index), kInterface, kFieldNames) {}

DeviceFace::~DeviceFace() {
  if (device_) device_->Detach(*this);
}

int DeviceFace::Register(sd_bus* bus) { return face_.Register(bus, kDevice, this); }

Device& DeviceFace::Object() {
  if (!device_) {
    device_ = objects_.At(index_);
    device_->Attach(*this);
  }
  return *device_;
}

void DeviceFace::AnnounceFields(unsigned fields) {
  Object();  // from now on its events reach the bus
  face_.Mark(fields);
  face_.Announce();
}

void DeviceFace::CUpdate() {
  face_.MarkSignal("CUpdate");
  face_.Announce();
}
