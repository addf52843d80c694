#include "platform/dbus/device_face.h"

#include <array>
#include <bit>
#include <cstdint>
#include <type_traits>
#include <utility>

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

int Read(sd_bus_message* value, const char* property, std::string& text, sd_bus_error* error) {
  return ReadText(value, property, text, error);
}
template <typename Number>
int Read(sd_bus_message* value, const char*, Number& number, sd_bus_error*) {
  constexpr char type = std::is_same_v<Number, double> ? 'd' : std::is_same_v<Number, std::int32_t> ? 'i' : 'n';
  return sd_bus_message_read_basic(value, type, &number);
}

template <auto Field>
int Get(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void* face, sd_bus_error* error) {
  return AnswerFaults(error, [&] { return Append(reply, static_cast<DeviceFace*>(face)->Object().*Field); });
}

int RefuseCode(sd_bus_error* error) {
  return sd_bus_error_setf(error, SD_BUS_ERROR_INVALID_ARGS,
                           "CCmd takes codes up to %d: the answer to a higher one could not be told in CCmdStat",
                           kLargestCommandCode);
}

template <auto Field, unsigned Bit>
int Set(sd_bus*, const char*, const char*, const char* property, sd_bus_message* sent, void* face,
        sd_bus_error* error) {
  return AnswerFaults(error, [&] {
    auto& self = *static_cast<DeviceFace*>(face);
    std::remove_reference_t<decltype(self.Object().*Field)> value{};
    const int result = Read(sent, property, value, error);
    if (result <= 0) return result;
    if constexpr (Bit == DeviceField::Cmd) {
      if (value > kLargestCommandCode) return RefuseCode(error);
    }
    self.Object().*Field = std::move(value);
    self.MarkForLater(Bit);
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

// A value of another type is refused before it gets here; nothing is stored then.
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
