#include "core/reception.h"

#include <string>

#include "core/channel_state.h"
#include "core/engine.h"
#include "core/error_trap.h"
#include "core/framing.h"
#include "core/lamps.h"
#include "core/offline.h"
#include "core/stream_values.h"
#include "protocol/status.h"

namespace {

void ShowRawStream(Engine& engine, int ch) {
  const Tables& tables = engine.tables;
  if (tables.DebugMode == False || tables.ChanDetailOpen[ch] == False) return;
  const std::string& stream = tables.ChanStream[ch];
  engine.dialogs.ShowDetail(22, std::to_string(stream.size()) + " ==> " + stream);
}

/// What the status walk found holds for one stream only, also when a fault ends its handling: a mode left
/// behind would let the next stream's weights be read in the wrong one.
class StreamState {
 public:
  StreamState(Tables& tables, int ch) : tables_(tables), ch_(ch) {}
  StreamState(const StreamState&) = delete;
  StreamState& operator=(const StreamState&) = delete;
  ~StreamState() {
    tables_.ChanMotion[ch_] = False;
    tables_.ChanMode[ch_].clear();
    tables_.ChanError[ch_].clear();
    tables_.ChanUnits[ch_].clear();
    tables_.ChanMatchName[ch_].clear();
    tables_.ChanMatchField[ch_].clear();
    for (int row = 1; row <= 9; ++row) tables_.ChanStatusN[row][ch_].clear();
  }

 private:
  Tables& tables_;
  int ch_;
};

/// A port that is not open has nothing waiting.
bool BytesWaiting(Tables& tables, int ch, SerialPort& port) {
  std::size_t waiting = 0;
  ResumeNextOnClosedPort(tables, ch, [&] { waiting = port.InBufferCount(); });
  return waiting > 0;
}

void HandleStream(Engine& engine, int ch) {
  Tables& tables = engine.tables;
  const int proto = tables.ChanProtocol[ch];
  ++tables.StreamsDecoded;
  tables.ChanLastRxTick[ch] = tables.ScanTick;
  tables.ChanStreamUnfinished[ch] = True;
  ReplaceFirstCarriageReturn(tables.ChanStream[ch]);
  ShowRawStream(engine, ch);
  tables.ProtoPolarity[proto].clear();
  const StreamState stream(tables, ch);
  ParseStatusData(tables, tables.ChanStream[ch], ch, proto);
  TakeStreamValues(engine, ch);
}

void CheckSilence(Engine& engine, int ch) {
  const Tables& tables = engine.tables;
  if (tables.ChanTimeout[ch] <= 0) return;
  if (TicksSince(tables, tables.ChanStreamEndTick[ch]) >= tables.ChanTimeout[ch]) FallOffline(engine, ch);
}

/// Bytes that end no stream do not put the time-out off: noise would keep an old weight good for ever.
void Receive(Engine& engine, int ch, SerialPort& port) {
  TurnRXLedON(engine.tables, engine.mainForm, ch);
  Tables& tables = engine.tables;
  const bool pause =
      tables.ChanTimeout[ch] > 0 && TicksSince(tables, tables.ChanByteTick[ch]) >= tables.ChanTimeout[ch];
  tables.ChanByteTick[ch] = tables.ScanTick;
  // What comes now does not continue what came before, also if that came while the channel was offline.
  if (port.TakeLineLoss() || pause) tables.ChanRxBuffer[ch].clear();
  port.Input(tables.ChanRxChunk[ch]);
  const Cut cut = CutStream(engine.tables, ch);
  if (cut == Cut::Fresh) engine.tables.ChanStreamEndTick[ch] = engine.tables.ScanTick;
  if (cut != Cut::None) HandleStream(engine, ch);
  if (cut != Cut::Fresh) CheckSilence(engine, ch);
}

}  // namespace

void CheckTimeout(Engine& engine, int ch) {
  if (ReadsStreams(engine.tables, ch)) CheckSilence(engine, ch);
}

void ReceptionCycle(Engine& engine, int ch) {
  Tables& tables = engine.tables;
  if (tables.ChanConnectUsing[ch] == ConnectUsing::SerialPort) {
    SerialPort& port = engine.ports.Port(ch);
    if (BytesWaiting(tables, ch, port)) {
      Receive(engine, ch, port);
    } else {
      CheckSilence(engine, ch);
    }
  } else if (tables.ChanConnectUsing[ch] == ConnectUsing::ArcNet) {
    engine.terminal.ReadArcNet(ch);
  }
}
