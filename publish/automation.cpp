#include "publish/automation.h"

#include <limits>
#include <string>
#include <utility>

#include "protocol/number.h"

namespace {

std::int16_t Narrow(std::int32_t value, std::string_view name) {
  if (value < std::numeric_limits<std::int16_t>::min() || value > std::numeric_limits<std::int16_t>::max()) {
    throw RunTimeError(ErrorNumber::Overflow,
                       "Overflow: " + std::string(name) + " " + std::to_string(value) + " does not fit 16 bits");
  }
  return static_cast<std::int16_t>(value);
}

struct CommandState {
  std::int32_t code;
  double parameter;
  std::int32_t status;
  bool operator==(const CommandState&) const = default;
};

}  // namespace

/// `Device<n>_CUpdate`: takes the command state out of the object. The next visit of the channel acts on it.
struct Automation::Handler : DeviceSink {
  Handler(Tables& store, std::shared_ptr<Device> object, int channel)
      : tables(store), device(std::move(object)), ch(channel) {
    device->Attach(*this);
  }
  ~Handler() override { device->Detach(*this); }
  Handler(const Handler&) = delete;
  Handler& operator=(const Handler&) = delete;

  /// Of the event that the program itself raises there is nothing to take: the fields hold what was handed over, or
  /// what a client has begun to write and has not sent yet.
  void CUpdate() override {
    if (std::exchange(ownEvent, false)) return;
    tables.ChanCmdState[ch] = device->CCmd;
    tables.ChanCmdParm[ch] = device->CCmdParm;
    tables.ChanCmdStatus[ch] = device->CCmdStat;
    agreed = Held();
  }
  CommandState Held() const { return {tables.ChanCmdState[ch], tables.ChanCmdParm[ch], tables.ChanCmdStatus[ch]}; }

  Tables& tables;
  std::shared_ptr<Device> device;
  int ch;
  CommandState agreed{};  ///< what was last handed over or taken
  bool ownEvent = false;
};

Automation::Automation(Tables& tables) : tables_(tables) {}
Automation::~Automation() = default;

void Automation::BindDevices() {
  for (int ch = 0; ch < kChannels; ++ch) {
    std::unique_ptr<Handler>& handler = handlers_[static_cast<std::size_t>(ch)];
    if (!handler) handler = std::make_unique<Handler>(tables_, objects_.At(ch), ch);
  }
}

void Automation::UpdateActiveX(int kind, int ch) {
  if (ch >= kChannels) return;
  Device& device = *objects_.At(ch);
  switch (kind) {
    case 1:
      device.CGross = NumericValue(tables_.ChanGross[ch]);
      written_[ch] |= DeviceField::Gross;
      break;
    case 2:
      device.CTare = NumericValue(tables_.ChanTare[ch]);
      written_[ch] |= DeviceField::Tare;
      break;
    case 3:
      device.CNet = NumericValue(tables_.ChanNet[ch]);
      written_[ch] |= DeviceField::Net;
      break;
    case 6:
      device.CScaleStat = tables_.ChanStatusBits[ch];
      written_[ch] |= DeviceField::ScaleStat;
      break;
    case 10:
      device.CDeviceDesc = tables_.ChanDeviceDesc[ch];
      written_[ch] |= DeviceField::DeviceDesc;
      break;
    default:
      break;
  }
}

void Automation::CallDeviceUpdateMethod(int ch) {
  // Cleared first: a value that does not fit costs one tick, not every tick from now on.
  tables_.ChanUpdatePending[ch] = False;
  Device& device = *objects_.At(ch);
  Handler* const handler = handlers_[static_cast<std::size_t>(ch)].get();
  // A command state that has not changed is not written again: it would wipe what a client is just writing.
  if (handler == nullptr || handler->agreed != handler->Held()) {
    device.CCmd = Narrow(tables_.ChanCmdState[ch], "CCmd");
    device.CCmdParm = tables_.ChanCmdParm[ch];
    device.CCmdStat = Narrow(tables_.ChanCmdStatus[ch], "CCmdStat");
    written_[ch] |= DeviceField::Cmd | DeviceField::CmdParm | DeviceField::CmdStat;
  }
  AnnounceFields(ch);  // a client that keeps copies of the fields has the new ones when the event comes
  if (handler != nullptr) {
    handler->agreed = handler->Held();
    handler->ownEvent = true;
  }
  device.CDoUpdate();
}

void Automation::AnnounceFields(int ch) {
  const unsigned fields = written_[ch];
  if (fields == 0) return;
  written_[ch] = 0;
  if (watcher_ != nullptr) watcher_->FieldsWritten(ch, fields);
}
