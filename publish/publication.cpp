#include "publish/publication.h"

#include <exception>
#include <string>

#include "core/channel_state.h"
#include "protocol/number.h"
#include "publish/command_intake.h"
#include "publish/opc_link.h"

namespace {

constexpr int kGross = 1;
constexpr int kTare = 2;
constexpr int kNet = 3;
constexpr int kStatus = 6;
constexpr int kStreamId = 9;
constexpr int kDescription = 10;
constexpr int kStatusSlot = 3;

/// Serves one outlet after the other whatever becomes of each, so that none is left with a weight of before. What the
/// first faulty one has raised is raised at the end.
class EachOutlet {
 public:
  template <typename Step>
  void Serve(const Step& step) {
    try {
      step();
    } catch (...) {
      if (!first_) first_ = std::current_exception();
    }
  }
  void RaiseFirstFault() const {
    if (first_) std::rethrow_exception(first_);
  }

 private:
  std::exception_ptr first_;
};

}  // namespace

Publication::Publication(Tables& tables, SerialPorts& ports, OpcControls& opc, Log& log, ScanDialogs& dialogs)
    : tables_(tables), ports_(ports), opc_(opc), log_(log), dialogs_(dialogs), automation_(tables) {}

void Publication::CreateTopics() { topics_.Clear(); }

void Publication::BindDevices() { automation_.BindDevices(); }

void Publication::PublishWeight(int kind, int ch, const std::string& value, std::string& last) {
  if (value == last) return;
  last = value;
  const int slot = kind - kGross;
  tables_.ChanDirty[Item::Gross + slot][ch] = True;
  EachOutlet outlets;
  const bool opc = tables_.ChanOpcEnabled[ch] == True;
  const bool dde = tables_.ChanDdeServer[ch] == True;
  if (opc || dde) {
    const double number = NumericValue(value);
    if (opc) outlets.Serve([&] { StageForOpc(ch, slot, number); });
    if (dde) {
      tables_.ChanDdeItems[ch][slot] = number;
      tables_.ChanDdePending[ch] = True;
    }
  }
  if (tables_.ChanDetailOpen[ch] == True) dialogs_.ShowDetail(slot, value);
  automation_.UpdateActiveX(kind, ch);
  outlets.RaiseFirstFault();
}

void Publication::StageForOpc(int ch, int slot, const OpcValue& value) {
  opc_.Control(ch).SetValue(static_cast<std::int16_t>(slot), value);
  tables_.ChanOpcPending[ch] = True;
}

void Publication::SetVal(int kind, int ch) {
  switch (kind) {
    case kGross:
      return PublishWeight(kind, ch, tables_.ChanGross[ch], tables_.ChanPrevGross[ch]);
    case kTare:
      return PublishWeight(kind, ch, tables_.ChanTare[ch], tables_.ChanPrevTare[ch]);
    case kNet:
      return PublishWeight(kind, ch, tables_.ChanNet[ch], tables_.ChanPrevNet[ch]);
    case kStatus:
    case kDescription:
      return automation_.UpdateActiveX(kind, ch);
    case kStreamId:
      if (tables_.ChanStreamId[ch] != tables_.ChanPrevStreamId[ch]) {
        tables_.ChanPrevStreamId[ch] = tables_.ChanStreamId[ch];
      }
      return;
    default:
      return;
  }
}

void Publication::StageStatus(int ch) {
  if (tables_.ChanDdeServer[ch] == True) {
    tables_.ChanDdeItems[ch][kStatusSlot] = tables_.ChanStatusBits[ch];
    tables_.ChanDdePending[ch] = True;
  }
  if (tables_.ChanOpcEnabled[ch] == True) StageForOpc(ch, kStatusSlot, tables_.ChanStatusBits[ch]);
}

void Publication::PublishStatus(int ch) {
  if (tables_.ChanStatusBits[ch] == tables_.ChanPrevStatusBits[ch]) return;
  tables_.ChanPrevStatusBits[ch] = tables_.ChanStatusBits[ch];
  SetVal(kStatus, ch);
  tables_.ChanUpdatePending[ch] = True;
  StageStatus(ch);
}

void Publication::RepublishOffline(int ch) {
  ForceRepublication(tables_, ch);
  StageStatus(ch);
}

void Publication::TakeAutomationCommand(int ch) { TakeCommandFromAutomation(tables_, ports_, log_, ch); }

void Publication::TakeOpcCommand(int ch) { TakeCommandFromOpc(tables_, ports_, log_, opc_.Control(ch), ch); }

void Publication::Flush(int ch) {
  const bool opc = tables_.ChanOpcEnabled[ch] == True && tables_.ChanOpcPending[ch] == True;
  const bool dde = tables_.ChanDdeServer[ch] == True && tables_.ChanDdePending[ch] == True;
  if (opc || dde || tables_.ChanUpdatePending[ch] == True) return FlushPending(ch, opc, dde);
  automation_.AnnounceFields(ch);
}

void Publication::FlushPending(int ch, bool opc, bool dde) {
  EachOutlet outlets;
  if (opc) outlets.Serve([&] { UpdateOpc(tables_, opc_.Control(ch), ch); });
  if (dde) {
    tables_.ChanDdePending[ch] = False;
    topics_.UpdateDDELinks(tables_, ch);
  }
  if (tables_.ChanUpdatePending[ch] == True) outlets.Serve([&] { automation_.CallDeviceUpdateMethod(ch); });
  automation_.AnnounceFields(ch);
  outlets.RaiseFirstFault();
}

void Publication::ConnectOpc(int ch, bool reinit) { ::ConnectOpc(tables_, opc_.Control(ch), log_, ch, reinit); }

void Publication::DisconnectOpc(int ch) { ::DisconnectOpc(opc_.Control(ch), log_, ch); }
