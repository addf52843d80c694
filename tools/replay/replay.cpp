#include "tools/replay/replay.h"

#include <utility>

#include "config/channel_file.h"
#include "core/fixed_tables.h"
#include "core/initialisation.h"
#include "core/scan_engine.h"
#include "core/startup.h"
#include "diagnostics/log_files.h"
#include "publish/device_text.h"

namespace {

constexpr int kFirstLogKind = 1;
constexpr int kLastLogKind = 8;
constexpr std::string_view kWeightLineStart = "Device #: ";
constexpr std::string_view kLogTextMark = " @ ";

std::string WithoutLineEnd(std::string text) {
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
  return text;
}

std::string Behind(const std::string& text, std::size_t at) {
  return at > text.size() ? std::string{} : text.substr(at);
}

int CheckedChannel(int number) {
  if (number < 1 || number > kChannels) {
    throw RunTimeError(ErrorNumber::SubscriptOutOfRange,
                       "There is no channel " + std::to_string(number) + ", only 1 to " + std::to_string(kChannels));
  }
  return number - 1;
}

/// A field that ends its device text is one character short and leaves its last "~" to the device; a single "~" is
/// a field. Nothing where the text of this command does not do so.
std::string LiteralTildeWarning(const Tables& tables, int proto, int row) {
  constexpr double kExample = 12.5;
  const std::string& definition = tables.ProtoCmdText[0][row][proto];
  if (tables.ProtoCmdEnabled[row][proto] == False || !definition.ends_with('~')) return {};
  const DeviceText example = BuildDeviceText(definition, kExample, 0, 0);
  if (example.form != DeviceTextForm::Wide) return {};
  return "command " + tables.ProtoCmdText[2][row][proto] + ", device text \"" + definition +
         "\": the last \"~\" is no part of the field and goes to the device, parameter 12.5 sends \"" + example.text +
         "\"; put a character behind the field";
}

}  // namespace

void Replay::MainWindow::Show() {
  LoadMainForm(*engine);
  ActivateMainForm(*engine);
}

Replay::Replay(Files& disk, const ReplaySetup& setup)
    : ch_(CheckedChannel(setup.number)),
      files_(disk),
      manager_(
          {system_, events_, ports_, files_, notice_, opc_, terminals_, databases_, startupForm_, mainForm_, dialogs_},
          setup.home),
      tables_(manager_.Store()),
      topics_(manager_.Publishing().Topics()),
      device_(manager_.Publishing().Devices().Objects().At(ch_)),
      opcControl_(opc_.control[static_cast<std::size_t>(ch_)]) {
  mainForm_.engine = &manager_.Parts();
  Main(manager_.Parts(), "");
  PutFilesInPlace(setup);
  StartUp();
  FirstInitialisation(setup.startTick);
  OpenInSpiteOfItsFile(setup.startTick);
  WarnOfFormats();

  topics_.SetWatcher(&flush_);
  device_->Attach(flush_);
  opcControl_.onUpdate = [this] { flush_.outlets.push_back("OPC"); };
  files_.TakeLines();
}

/// Which format file is the channel's own stands in its channel file.
void Replay::PutFilesInPlace(const ReplaySetup& setup) {
  if (!setup.channel.empty()) files_.PutInPlace(ChannelFilePath(tables_, ch_), setup.channel);
  if (setup.format.empty()) return;
  try {
    manager_.Parts().configuration.CfgProc(CfgAction::ReadChannelFile, ch_);
  } catch (const RunTimeError&) {
    return;  // the initialisation meets the same fault and tells it
  }
  const int proto = tables_.ChanProtocol[ch_];
  if (ProtocolName(proto).empty()) {
    throw RunTimeError(ErrorNumber::InvalidCall, "Channel " + DisplayNumber(ch_) + " uses protocol " +
                                                     std::to_string(proto) + ", which has no format file");
  }
  files_.PutInPlace(PathInProgramFolder(tables_, tables_.ProtoFileName[proto]), setup.format);
}

void Replay::StartUp() {
  Engine& engine = manager_.Parts();
  LoadStartupForm(engine);
  if (tables_.StartMinimized == False) LaunchMainScreen(engine);
}

/// Each tick of the initialisation runs at the start tick, so that the capture begins behind it however many ticks
/// faults have cost.
void Replay::InitialisationTick(int startTick) {
  tables_.ScanTick = startTick - 1;
  const std::optional<RunTimeError> fault = Timer1Tick(manager_.Parts());
  tables_.ScanTick = startTick;
  if (!fault) return;
  const RunTimeError named = WarnOf(*fault);
  initialisationFault_ = named;
}

/// The fault with the files that were put in place under their own names.
RunTimeError Replay::WarnOf(const RunTimeError& fault) {
  const RunTimeError named(fault.Number(), files_.NameSources(fault.Description()));
  warnings_.push_back("fault " + std::to_string(named.Number()) + ": " + named.Description());
  return named;
}

/// The channel is the only one of the replayed plant: the files of the others are not even read.
void Replay::FirstInitialisation(int startTick) {
  tables_.MaxChannel = ch_;
  tables_.NextChannelToOpen = ch_;
  while (tables_.ChannelsInitialised == False) InitialisationTick(startTick);
}

void Replay::OpenInSpiteOfItsFile(int startTick) {
  const bool disabledByItsFile = tables_.ChanStatusText[ch_] == Caption::DeviceDisabled;
  const bool disabledByAFault = tables_.ChanEnabled[ch_] == False && !disabledByItsFile;
  if (tables_.ChanConnected[ch_] == True || disabledByAFault) return;
  const std::string channel = "channel " + DisplayNumber(ch_);
  if (disabledByItsFile) {
    warnings_.push_back(channel + " is disabled in its file; it is replayed as if it were enabled");
  }
  if (tables_.ChanConnectUsing[ch_] != ConnectUsing::SerialPort) {
    warnings_.push_back(channel + " does not use a serial port; it is replayed as if it did");
  }
  tables_.ChanEnabled[ch_] = True;
  tables_.ChanConnectUsing[ch_] = ConnectUsing::SerialPort;
  tables_.ReinitChannel = static_cast<std::int16_t>(ch_);
  InitialisationTick(startTick);
}

/// The fault of the channel's own format is what kept it closed.
void Replay::WarnOfFormats() {
  const int proto = tables_.ChanProtocol[ch_];
  if (ProtocolName(proto).empty()) return;  // the initialisation has told it
  for (int each = 0; each < tables_.ProtoFault.Size(); ++each) {
    if (!tables_.ProtoFault[each]) continue;
    const RunTimeError named = WarnOf(*tables_.ProtoFault[each]);
    if (each == proto && !initialisationFault_) initialisationFault_ = named;
  }
  const std::string format = "protocol " + std::to_string(proto) + " (" + ProtocolName(proto) + ")";
  if (proto == 0) {
    warnings_.push_back(format + " is no scale protocol: nothing is decoded");
  } else if (proto > kLastFormatReadAtStart) {
    warnings_.push_back(format + " is not read at the start, only on the setup screen: nothing is decoded");
  } else if (const std::string path = PathInProgramFolder(tables_, tables_.ProtoFileName[proto]);
             files_.Read(path).empty()) {
    warnings_.push_back(format + " has no format file " + path + ": nothing is decoded");
  } else if (!tables_.ProtoFault[proto] && tables_.ProtoStatusCount[proto] < 0) {
    warnings_.push_back(format + " has no status rows: no status is decoded");
  }
  for (int row = 0; row < kCommandRows; ++row) {
    const std::string warning = LiteralTildeWarning(tables_, proto, row);
    if (!warning.empty()) warnings_.push_back(format + ", " + warning);
  }
}

void Replay::Act(const DeviceWrites& writes) {
  for (const auto& write : writes.fields) write(*device_);
  device_->CDoUpdate();
}

void Replay::Act(const OpcArrivals& arrivals) {
  for (const auto& [item, value] : arrivals.items) opcControl_.Arrive(item, value);
}

TickEvents Replay::Tick(const std::string& bytes) {
  MemoryPort& port = ports_.port[static_cast<std::size_t>(ch_)];
  port.waiting += bytes;
  const bool bytesCame = tables_.ChanConnected[ch_] == True && !port.waiting.empty();
  flush_.outlets.clear();
  opcControl_.written.clear();
  port.sent.clear();
  const int statusBefore = tables_.ChanCmdStatus[ch_];

  TickEvents events;
  events.error = Timer1Tick(manager_.Parts());
  if (!events.error) events.error = std::exchange(initialisationFault_, std::nullopt);
  if (bytesCame && port.waiting.empty()) {
    const bool framed = tables_.ChanLastRxTick[ch_] == tables_.ScanTick;
    events.outcome = framed ? TickEvents::Outcome::Stream : TickEvents::Outcome::Partial;
    events.chunk = tables_.ChanRxChunk[ch_];
  }
  events.flush = flush_.outlets;
  events.opcWrites = opcControl_.written;
  events.portOut = port.sent;
  if (tables_.ChanCmdStatus[ch_] != statusBefore) events.answer = tables_.ChanCmdStatus[ch_];
  SortLines(events);
  return events;
}

void Replay::SortLines(TickEvents& events) {
  for (const OverlayFiles::Line& line : files_.TakeLines()) {
    const std::string text = WithoutLineEnd(line.text);
    int kind = kFirstLogKind;
    while (kind <= kLastLogKind && line.path != tables_.ProgramFolder + "/" + LogFiles::FileName(kind)) ++kind;
    if (kind > kLastLogKind) {
      events.weightLog.push_back(Behind(text, text.find(kWeightLineStart)));
    } else {
      events.log.push_back({kind, Behind(text, text.find(kLogTextMark) + kLogTextMark.size())});
    }
  }
}
