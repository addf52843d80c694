#include "core/stream_values.h"

#include <string>

#include "core/channel_state.h"
#include "core/data_field.h"
#include "core/engine.h"
#include "core/lamps.h"
#include "protocol/number.h"
#include "protocol/weight_format.h"

namespace {

namespace Kind {
constexpr int Gross = 1;
constexpr int Tare = 2;
constexpr int Net = 3;
constexpr int StreamId = 9;
}  // namespace Kind

void Publish(Engine& engine, int ch, int kind, std::string& value, std::string_view text) {
  value = text;
  engine.publisher.SetVal(kind, ch);
}

/// Formats the field into `value` and publishes it, or publishes `otherwise` if the stream does not hold it.
/// True if the field was there. It is formatted aside: raw digits are no weight when formatting raises.
bool TakeField(Engine& engine, int ch, int kind, std::string& value, const DataField& field, std::string_view polarity,
               std::string_view otherwise) {
  Tables& tables = engine.tables;
  const int proto = tables.ChanProtocol[ch];
  if (!field.LiesIn(tables.ChanStream[ch])) {
    Publish(engine, ch, kind, value, otherwise);
    return false;
  }
  tables.WeightField = field.Of(tables.ChanStream[ch]);
  FormatValue(tables, ch, tables.WeightField, tables.ProtoDecimalCode[proto], polarity, proto);
  Publish(engine, ch, kind, value, tables.WeightField);
  return true;
}

void TakeUnits(Tables& tables, int ch) {
  if (tables.ChanUnits[ch].empty()) return;
  SetLamp(tables, ch, Item::Units, tables.ChanUnits[ch] == tables.ChanPrimaryUnitsName[ch]);
}

void TakeStatusWord(Engine& engine, int ch) {
  Tables& tables = engine.tables;
  if (tables.ChanStatusBits[ch] == tables.ChanPrevStatusBits[ch]) return;
  engine.publisher.PublishStatus(ch);
  if (tables.ChanDetailOpen[ch] == True) engine.dialogs.ShowDetail(3, std::to_string(tables.ChanStatusBits[ch]));
}

/// The device reports a fault: no weight of it is shown. In net mode the tare is kept.
void TakeDeviceFault(Engine& engine, int ch) {
  Tables& tables = engine.tables;
  SetLamp(tables, ch, Item::Error, true);
  if (tables.ChanStatusText[ch] != tables.ChanError[ch]) {
    SetCaption(tables, ch, tables.ChanError[ch]);
    if (tables.ChanDetailOpen[ch] == True) engine.dialogs.ShowDetail(9, tables.ChanError[ch]);
  }
  Publish(engine, ch, Kind::Net, tables.ChanNet[ch], "0");
  Publish(engine, ch, Kind::Gross, tables.ChanGross[ch], "0");
  const bool netMode = tables.ChanMode[ch] == "NET";
  if (!netMode) Publish(engine, ch, Kind::Tare, tables.ChanTare[ch], "0");
  SetLamp(tables, ch, Item::Net, netMode);
}

/// In net mode the device sends tare and net; gross is computed where the point comes from status data.
void TakeNetModeWeights(Engine& engine, int ch) {
  Tables& tables = engine.tables;
  const int proto = tables.ChanProtocol[ch];
  SetLamp(tables, ch, Item::Net, true);
  if (!TakeField(engine, ch, Kind::Tare, tables.ChanTare[ch], TareField(tables, proto), "", "")) {
    SetLamp(tables, ch, Item::Error, false);
  }
  TakeField(engine, ch, Kind::Net, tables.ChanNet[ch], NetField(tables, proto), tables.ProtoPolarity[proto], "0");
  if (tables.ProtoGrossEnable[proto] == False) {
    Publish(engine, ch, Kind::Gross, tables.ChanGross[ch], "");
    return;
  }
  if (tables.ChanStatusDecimals[ch] == True) {
    tables.ChanGross[ch] = GrossOfNetMode(tables, proto, tables.ChanTare[ch], tables.ChanNet[ch]).View();
  }
  engine.publisher.SetVal(Kind::Gross, ch);
}

void TakeGrossModeWeights(Engine& engine, int ch) {
  Tables& tables = engine.tables;
  const int proto = tables.ChanProtocol[ch];
  SetLamp(tables, ch, Item::Net, false);
  TakeField(engine, ch, Kind::Gross, tables.ChanGross[ch], GrossField(tables, proto), tables.ProtoPolarity[proto], "0");
  Publish(engine, ch, Kind::Tare, tables.ChanTare[ch], "0");
  Publish(engine, ch, Kind::Net, tables.ChanNet[ch], "0");
}

void TakeWeights(Engine& engine, int ch) {
  Tables& tables = engine.tables;
  SetLamp(tables, ch, Item::Error, false);
  if (tables.ChanStatusText[ch] != Caption::Online) SetCaption(tables, ch, Caption::Online);
  if (tables.ChanMode[ch] == "NET") {
    TakeNetModeWeights(engine, ch);
  } else {
    TakeGrossModeWeights(engine, ch);
  }
}

void TakeStreamId(Engine& engine, int ch) {
  Tables& tables = engine.tables;
  const DataField field = IdField(tables, ch);
  std::string& id = tables.ChanStreamId[ch];
  if (field.LiesIn(tables.ChanStream[ch])) {
    id = GeneralText(Decimal::FromText(field.Of(tables.ChanStream[ch]))).View();
  } else {
    id.clear();
  }
  engine.publisher.SetVal(Kind::StreamId, ch);
}

/// Opened and closed for every stream, so that the file can be read while the program runs. A file that cannot
/// be written raises once, and then not again until it could be written: a full disk may not stop every tick.
void WriteWeightLog(Engine& engine, int ch) {
  Tables& tables = engine.tables;
  if (tables.ChanAsciiLog[ch] == False) return;
  std::string line = engine.system.DateTimeText() + " Device #: " + std::to_string(ch);
  for (const std::string* value :
       {&tables.ChanGross[ch], &tables.ChanTare[ch], &tables.ChanNet[ch], &tables.ChanStreamId[ch]}) {
    line += ", " + *value;
  }
  line += ", \r\n";
  const bool failedBefore = tables.ChanAsciiLogFailed[ch] == True;
  try {
    engine.files.Append(tables.ChanAsciiLogName[ch], line);
    tables.ChanAsciiLogFailed[ch] = False;
  } catch (const RunTimeError&) {
    tables.ChanAsciiLogFailed[ch] = True;
    if (!failedBefore) throw;
  }
}

}  // namespace

void TakeStreamValues(Engine& engine, int ch) {
  Tables& tables = engine.tables;
  TakeUnits(tables, ch);
  TakeStatusWord(engine, ch);
  if (tables.ChanError[ch].empty()) {
    TakeWeights(engine, ch);
  } else {
    TakeDeviceFault(engine, ch);
  }
  TakeStreamId(engine, ch);
  SetLamp(tables, ch, Item::Motion, tables.ChanMotion[ch] == True);
  tables.ChanStreamUnfinished[ch] = False;
  WriteWeightLog(engine, ch);
}
