#include "platform/dbus/bus_adapter.h"

#include <array>
#include <optional>
#include <utility>
#include <vector>

#include "platform/dbus/bus_face.h"
#include "platform/dbus/device_face.h"
#include "platform/dbus/setup_face.h"
#include "platform/dbus/topic_face.h"
#include "publish/publication.h"

namespace {

constexpr int kDevices = 33;

}  // namespace

class BusAdapter::Faces : public DeviceFieldWatcher, public DdeItemWatcher {
 public:
  Faces(Publication& publication, std::function<void(const std::string&)> log)
      : publication_(publication),
        link_("org.tarvex.Manager", {.connected = [this](sd_bus* bus) { return Register(bus); },
                                     .flush = [this] { Flush(); },
                                     .log = std::move(log)}) {
    for (int index = 0; index < kDevices; ++index) {
      devices_.push_back(std::make_unique<DeviceFace>(publication.Devices().Objects(), link_, index));
    }
    for (int form = 0; form < kChannels; ++form) {
      const bool answers = DdeTopics::FormOf(DdeTopics::TopicOf(form)) == form;
      topics_.push_back(answers ? std::make_unique<TopicFace>(publication.Topics(), link_, form) : nullptr);
    }
    publication.Devices().SetWatcher(this);
    publication.Topics().SetWatcher(this);
  }
  ~Faces() override {
    publication_.Devices().SetWatcher(nullptr);
    publication_.Topics().SetWatcher(nullptr);
  }

  BusLink& Link() { return link_; }
  void OfferSetup(SetupCalls calls) { setup_.emplace(std::move(calls)); }

  void FieldsWritten(int index, unsigned fields) override {
    devices_[static_cast<std::size_t>(index)]->AnnounceFields(fields);
  }
  void ItemsChanged(int form, unsigned items) override {
    if (const auto& topic = topics_[static_cast<std::size_t>(form)]) topic->AnnounceItems(items);
  }

 private:
  int Register(sd_bus* bus);
  void Flush();

  static int ConnectorDevice(sd_bus_message* call, void* faces, sd_bus_error* error);
  static const sd_bus_vtable kConnector[];

  Publication& publication_;
  BusLink link_;
  std::vector<std::unique_ptr<DeviceFace>> devices_;
  std::vector<std::unique_ptr<TopicFace>> topics_;  ///< by form; null where another form answers for the topic
  std::optional<SetupFace> setup_;
};

const sd_bus_vtable BusAdapter::Faces::kConnector[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD_WITH_NAMES("Device", "n", SD_BUS_PARAM(index), "o", SD_BUS_PARAM(device), ConnectorDevice, 0),
    SD_BUS_VTABLE_END,
};

int BusAdapter::Faces::ConnectorDevice(sd_bus_message* call, void* faces, sd_bus_error* error) {
  std::int16_t index = 0;
  const int result = sd_bus_message_read(call, "n", &index);
  if (result < 0) return result;
  return AnswerFaults(error, [&] {
    auto& self = *static_cast<Faces*>(faces);
    Connector(self.publication_.Devices().Objects()).Device(index);
    return sd_bus_reply_method_return(call, "o", self.devices_[static_cast<std::size_t>(index)]->Path().c_str());
  });
}

int BusAdapter::Faces::Register(sd_bus* bus) {
  int result =
      sd_bus_add_object_vtable(bus, nullptr, "/org/tarvex/Connector", "org.tarvex.Connector", kConnector, this);
  for (const auto& device : devices_) {
    if (result >= 0) result = device->Register(bus);
  }
  for (const auto& topic : topics_) {
    if (result >= 0 && topic) result = topic->Register(bus);
  }
  if (result >= 0 && setup_) result = setup_->Register(bus);
  return result;
}

void BusAdapter::Faces::Flush() {
  for (const auto& device : devices_) device->Announce();
  for (const auto& topic : topics_) {
    if (topic) topic->Announce();
  }
}

BusAdapter::BusAdapter(Publication& publication, std::function<void(const std::string&)> log)
    : faces_(std::make_unique<Faces>(publication, std::move(log))) {}
BusAdapter::~BusAdapter() = default;

void BusAdapter::OfferSetup(SetupCalls calls) { faces_->OfferSetup(std::move(calls)); }
void BusAdapter::Start() { faces_->Link().Start(); }
void BusAdapter::Stop() { faces_->Link().Stop(); }
