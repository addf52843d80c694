#include "config/setup/live_line.h"

#include <algorithm>
#include <array>

#include "config/setup/field_values.h"
#include "core/fixed_tables.h"
#include "core/framing.h"
#include "protocol/number.h"

namespace {

constexpr std::int64_t kTryAgainMilliseconds = 1000;
constexpr int kTypedRow = StatusTable::kRows - 1;  // behind those of any file

std::string Quoted(const std::string& text) { return "\"" + text + "\""; }

std::string_view Weight(const std::string& value) { return Trim(value); }

/// What the whole stream says.
std::string Summary(const ExplainedStream& explained) {
  if (!explained.error.empty()) return explained.error;
  std::string text;
  for (const ExplainedField& field : explained.fields) {
    if (!field.fault.empty()) return field.fault;
    if (field.value.empty()) continue;
    text += (text.empty() ? "" : "  ") + std::string(field.name) + " " + std::string(Weight(field.value));
  }
  if (!explained.units.empty()) text += " " + explained.units;
  if (explained.motion) text += ", motion";
  return text.empty() ? "no weight in this stream" : text;
}

std::string ValueOf(const ExplainedField& field) {
  std::string text(field.name);
  if (!field.enabled) return text + " is not enabled";
  if (!field.found) return text + ": the stream is too short";
  if (!field.fault.empty()) return text + ": " + field.fault;
  if (!field.taken) return text + ": " + Quoted(field.raw) + ", not used in this mode";
  return text + ": " + Quoted(field.raw) + " = " + std::string(Weight(field.value));
}

}  // namespace

LiveListener::LiveListener(const Tables& tables, SerialPorts& ports, const SetupModel& model)
    : live_(tables), ports_(ports), model_(model) {}

LiveListener::~LiveListener() = default;

void LiveListener::Start(int ch, const std::string& stream) {
  channel_ = ch;
  scratch_ = std::make_unique<Tables>();
  FillFixedTables(*scratch_);
  scratch_->ChanStream[ch] = stream;
  scratch_->ProtoIdEnable[ch] = live_.ProtoIdEnable[ch];
  scratch_->ProtoIdPos[ch] = live_.ProtoIdPos[ch];
  scratch_->ProtoIdLen[ch] = live_.ProtoIdLen[ch];
  gridRevision_ = protocol_ = -1;
  framing_ = {-1};
  opened_.reset();
  triedAt_ = -kTryAgainMilliseconds;
  const SerialPort& port = ports_.Port(ch);
  before_ = {.port = port.CommPort(), .handshake = port.Handshaking()};
  settingsBefore_ = port.Settings();
}

void LiveListener::Stop() {
  if (channel_ == kNoChannel) return;
  SerialPort& port = ports_.Port(channel_);
  port.Close();
  port.SetCommPort(before_.port);
  port.SetSettings(settingsBefore_);
  port.SetHandshaking(before_.handshake);
  channel_ = kNoChannel;
  scratch_.reset();
}

LiveListener::Settings LiveListener::Wanted() const {
  const SetupFields& fields = model_.Fields();
  if (fields.At(Control::cb, 0).value != ConnectUsing::SerialPort) return {};
  return {fields.At(Control::cb, 1).value, fields.At(Control::cb, 2).value, fields.At(Control::ckXONXOFF).value};
}

void LiveListener::OpenPort() {
  SerialPort& port = ports_.Port(channel_);
  port.Close();
  scratch_->ChanRxBuffer[channel_].clear();
  if (opened_->port < 0 || opened_->setup < 0) {
    notice_ = "Choose a port and its settings to see what the device sends.";
    return;
  }
  const std::string name = "COM" + std::to_string(opened_->port + 1);
  const std::string& settings = live_.PortSettingsTable[opened_->setup];
  port.SetCommPort(opened_->port + 1);
  port.SetSettings(settings);
  port.SetHandshaking(opened_->handshake);
  try {
    port.Open();
    notice_ = "Listening on " + name + " at " + settings + "; no stream yet.";
  } catch (const RunTimeError& fault) {
    notice_ = fault.Description();
    scratch_->ChanStream[channel_].clear();  // nothing is live any more
  }
}

/// The port follows what is chosen, and is tried again while it cannot be had.
void LiveListener::Listen(std::int64_t now) {
  SerialPort& port = ports_.Port(channel_);
  const Settings wanted = Wanted();
  const bool again = !port.PortOpen() && now - triedAt_ >= kTryAgainMilliseconds;
  if (wanted != opened_ || again) {
    if (opened_ && wanted != *opened_) scratch_->ChanStream[channel_].clear();
    opened_ = wanted;
    triedAt_ = now;
    OpenPort();
  }
  if (port.PortOpen()) Receive(port);
}

void LiveListener::Receive(SerialPort& port) {
  Tables& tables = *scratch_;
  if (port.TakeLineLoss()) tables.ChanRxBuffer[channel_].clear();
  if (port.InBufferCount() == 0) return;
  port.Input(tables.ChanRxChunk[channel_]);
  CutStream(tables, channel_);
}

/// Puts what is typed into the listener's own tables; false for a number that cannot be read.
bool LiveListener::TakeRecord() {
  Tables& tables = *scratch_;
  const SetupFields& fields = model_.Fields();
  const int proto = model_.Protocol();
  tables.ChanProtocol[channel_] = proto;
  const std::int32_t places = std::max(0, fields.At(Control::cb, 6).value);
  bool changed = protocol_ != proto || places != tables.ChanDecimalPlaces[channel_];
  tables.ChanDecimalPlaces[channel_] = places;
  const auto framing = [&] {
    return std::array{proto, tables.ProtoStartChar[proto], tables.ProtoTerminator[proto], tables.ProtoMaxStream[proto]};
  };
  try {
    FieldsToProtocol(fields, tables, proto);
  } catch (const RunTimeError& fault) {
    notice_ = fault.Description();
    return false;
  }
  if (framing() != framing_ && framing_[0] >= 0) {  // what was cut before is no stream of this framing
    tables.ChanStream[channel_].clear();
    tables.ChanRxBuffer[channel_].clear();
  }
  framing_ = framing();
  const StatusGrid& grid = model_.Grid();
  if (changed || grid.Revision() != gridRevision_) {
    changed = true;
    gridRevision_ = grid.Revision();
    protocol_ = proto;
    grid.PutInto(tables.ProtoStatusTable[proto]);
    int row = 0;
    while (row < StatusGrid::kRows && !grid.At(row, 0).value_or("").empty()) ++row;
    tables.ProtoStatusCount[proto] = row < StatusGrid::kRows ? row : -1;
  }
  if (!changed) return true;
  tables.ChanDecimalsKnown[channel_] = tables.ChanStatusDecimals[channel_] = False;
  tables.ProtoDecimalCode[proto] = 0;
  return true;
}

LiveLine LiveListener::Look(std::optional<FieldId> focus, std::int64_t now) {
  LiveLine line;
  if (channel_ == kNoChannel) return line;
  const bool readable = TakeRecord();
  Listen(now);
  line.stream = scratch_->ChanStream[channel_];
  line.notice = notice_;
  if (line.stream.empty()) {  // without a terminator the bytes as they come help to find it
    line.stream = scratch_->ChanRxBuffer[channel_];
    line.value = line.stream.empty() ? "" : "no terminator so far";
    return line;
  }
  if (!readable) {
    line.value = notice_;
    return line;
  }
  try {
    Mark(line, focus, ExplainStream(*scratch_, channel_));
  } catch (const RunTimeError& fault) {
    line.value = fault.Description();
  }
  scratch_->ChanStream[channel_] = line.stream;  // as received, for the next look
  return line;
}

void LiveListener::Mark(LiveLine& line, std::optional<FieldId> focus, const ExplainedStream& explained) {
  line.value = Summary(explained);
  if (!focus) return;
  constexpr int kFields = 4;
  const bool ofField = (focus->control == Control::t && focus->element < 2 * kFields) || focus->control == Control::ck;
  if (ofField) {
    const int index = focus->control == Control::t ? focus->element / 2 : focus->element;
    const ExplainedField& field = explained.fields[static_cast<std::size_t>(index)];
    line.first = field.first;
    line.last = field.last;
    line.value = ValueOf(field);
    return;
  }
  if (model_.Entry().IsOpen()) {
    MarkRow(line, TypedRow(), model_.Fields().At(Control::cbStatus).Item());
  } else if (focus->control == Control::TDBList1) {
    const StatusTable& table = scratch_->ProtoStatusTable[scratch_->ChanProtocol[channel_]];
    const int row = model_.Grid().Bookmark();
    if (!table.Text(row, 0).empty()) MarkRow(line, ExplainRow(table, row, line.stream), table.Text(row, 0));
  }
}

void LiveListener::MarkRow(LiveLine& line, const ExplainedRow& row, const std::string& name) const {
  if (!row.enabled) {
    line.value = name + " is not enabled";
    return;
  }
  if (row.first < 1) {
    line.value = name + ": no position yet";
    return;
  }
  line.first = row.first;
  line.last = row.last;
  line.value = name + (row.matched ? ": matches" : ": does not match");
  if (!row.longEnough) {
    line.value += ", the stream is too short";
  } else if (!row.matched) {
    line.value += row.text ? ", found " + Quoted(row.found) : ", the bits say " + row.found;
  }
}

/// The row that is being typed, decoded beside the table.
ExplainedRow LiveListener::TypedRow() {
  const int proto = scratch_->ChanProtocol[channel_];
  StatusTable& table = scratch_->ProtoStatusTable[proto];
  const SetupFields& fields = model_.Fields();
  table.SetCell(kTypedRow, 0, fields.At(Control::cbStatus).Item());
  table.SetCell(kTypedRow, 1, fields.At(Control::cbDDE).Item());
  for (int i = 0; i < 3; ++i) table.SetCell(kTypedRow, 2 + i, fields.At(Control::te, i).text);
  table.SetCell(kTypedRow, 5, "X");
  return ExplainRow(table, kTypedRow, scratch_->ChanStream[channel_]);
}
