#include "platform/dbus/topic_face.h"

#include <algorithm>
#include <array>

#include "platform/dbus/bus_text.h"

namespace {

constexpr const char* kInterface = "org.tarvex.Dde";
/// `kDdeItemNames` as the bus wants them.
constexpr std::array<const char*, 7> kItems = {"Gross", "Tare", "Net", "ScaleStat", "Cmd", "CmdParm", "CmdStat"};
static_assert(std::equal(kItems.begin(), kItems.end(), kDdeItemNames.begin(), kDdeItemNames.end()));

int ItemOf(std::string_view property) {
  return static_cast<int>(std::find(kItems.begin(), kItems.end(), property) - kItems.begin());
}

int Request(sd_bus*, const char*, const char*, const char* property, sd_bus_message* reply, void* face,
            sd_bus_error* error) {
  return AnswerFaults(error, [&] {
    const std::string text = BusText(static_cast<TopicFace*>(face)->Request(ItemOf(property)));
    return sd_bus_message_append_basic(reply, 's', text.c_str());
  });
}

int Poke(sd_bus*, const char*, const char*, const char* property, sd_bus_message* value, void* face,
         sd_bus_error* error) {
  return AnswerFaults(error, [&] {
    std::string text;
    const int result = ReadText(value, property, text, error);
    if (result > 0) static_cast<TopicFace*>(face)->Poke(ItemOf(property), text);
    return result;
  });
}

constexpr sd_bus_vtable Item(int item) {
  return SD_BUS_WRITABLE_PROPERTY(kItems[static_cast<std::size_t>(item)], "s", Request, Poke, 0,
                                  SD_BUS_VTABLE_PROPERTY_EMITS_CHANGE);
}

constexpr sd_bus_vtable kTopic[] = {
    SD_BUS_VTABLE_START(0), Item(0), Item(1), Item(2), Item(3), Item(4), Item(5), Item(6), SD_BUS_VTABLE_END,
};

}  // namespace

TopicFace::TopicFace(DdeTopics& topics, BusLink& link, int form)
    : topics_(topics), form_(form), face_(link, "/org/tarvex/dde/" + DdeTopics::TopicOf(form), kInterface, kItems) {}

int TopicFace::Register(sd_bus* bus) { return face_.Register(bus, kTopic, this); }

void TopicFace::AnnounceItems(unsigned items) {
  if (poked_) return face_.MarkForLater(items);
  face_.Mark(items);
  face_.Announce();
}

void TopicFace::Poke(int item, std::string_view text) {
  poked_ = true;
  topics_.SetItemText(form_, item, text);
  poked_ = false;
}
