#include "platform/dbus/setup_face.h"

#include <cstdint>

#include "platform/dbus/bus_face.h"
#include "platform/dbus/bus_text.h"

namespace {

template <auto Call>
int Reload(sd_bus_message* call, void* face, sd_bus_error* error) {
  std::int32_t number = 0;
  const int result = sd_bus_message_read(call, "i", &number);
  if (result < 0) return result;
  return AnswerFaults(error, [&] {
    (static_cast<SetupFace*>(face)->Calls().*Call)(number);
    return sd_bus_reply_method_return(call, nullptr);
  });
}

int EditedChannel(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void* face,
                  sd_bus_error* error) {
  return AnswerFaults(error, [&] {
    const std::int32_t number = static_cast<SetupFace*>(face)->Calls().editedChannel();
    return sd_bus_message_append_basic(reply, 'i', &number);
  });
}

int Folder(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void* face, sd_bus_error* error) {
  return AnswerFaults(error, [&] {
    return sd_bus_message_append_basic(reply, 's', BusText(static_cast<SetupFace*>(face)->Calls().folder).c_str());
  });
}

constexpr sd_bus_vtable kSetup[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD_WITH_ARGS("ReloadChannel", SD_BUS_ARGS("i", channel), SD_BUS_NO_RESULT,
                            (Reload<&SetupCalls::reloadChannel>), 0),
    SD_BUS_METHOD_WITH_ARGS("ReloadProtocol", SD_BUS_ARGS("i", protocol), SD_BUS_NO_RESULT,
                            (Reload<&SetupCalls::reloadProtocol>), 0),
    SD_BUS_PROPERTY("EditedChannel", "i", EditedChannel, 0, 0),
    SD_BUS_PROPERTY("Folder", "s", Folder, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_VTABLE_END,
};

}  // namespace

int SetupFace::Register(sd_bus* bus) {
  return sd_bus_add_object_vtable(bus, nullptr, "/org/tarvex/Setup", "org.tarvex.Setup", kSetup, this);
}
