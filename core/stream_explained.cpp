#include "core/stream_explained.h"

#include "core/data_field.h"
#include "core/framing.h"
#include "core/setting_limits.h"
#include "core/tables.h"
#include "platform/run_time_error.h"
#include "protocol/number.h"
#include "protocol/status.h"
#include "protocol/status_match.h"
#include "protocol/weight_format.h"

namespace {

/// Last character of a field that begins at `first`, whatever numbers a file gives.
int LastOf(int first, int length) {
  return static_cast<int>(std::min<std::int64_t>(std::int64_t{first} + length - 1, kLongestStream));
}

/// What holds for one stream only.
void ForgetStream(Tables& tables, int ch) {
  tables.ProtoPolarity[tables.ChanProtocol[ch]].clear();
  tables.ChanMotion[ch] = False;
  for (std::string* text : {&tables.ChanMode[ch], &tables.ChanError[ch], &tables.ChanUnits[ch]}) text->clear();
}

ExplainedField Explain(std::string_view name, const DataField& field, const std::string& stream) {
  ExplainedField explained{.name = name, .first = field.position, .last = LastOf(field.position, field.length)};
  explained.enabled = field.enabled;
  explained.found = field.LiesIn(stream);
  if (explained.found) explained.raw = field.Of(stream);
  return explained;
}

void Format(Tables& tables, int ch, ExplainedField& field, std::string_view polarity) {
  if (!field.found) return;
  const int proto = tables.ChanProtocol[ch];
  try {
    std::string value = field.raw;
    FormatValue(tables, ch, value, tables.ProtoDecimalCode[proto], polarity, proto);
    field.value = value;
  } catch (const RunTimeError& fault) {
    field.fault = fault.Description();
  }
}

}  // namespace

ExplainedRow ExplainRow(const StatusTable& table, int row, std::string_view stream) {
  const StatusRule& rule = table.Rule(row);
  ExplainedRow explained{.row = row, .first = rule.position, .last = LastOf(rule.position, std::max(1, rule.length))};
  explained.enabled = rule.enabled;
  if (!rule.enabled) return explained;
  explained.text = rule.text;
  explained.longEnough = LongEnough(stream, rule);
  explained.matched = RowMatches(table, row, rule, stream);
  if (rule.text) {
    explained.expected = rule.unconditional ? "" : table.Text(row, 4);
    if (explained.longEnough) explained.found = FieldText(stream, rule);
  } else {
    explained.expected = table.Text(row, 4);
    explained.found = std::to_string(FieldByte(stream, rule) & rule.fieldMask);
  }
  return explained;
}

ExplainedStream ExplainStream(Tables& tables, int ch) {
  const int proto = tables.ChanProtocol[ch];
  std::string& stream = tables.ChanStream[ch];
  ReplaceFirstCarriageReturn(stream);
  ForgetStream(tables, ch);
  ParseStatusData(tables, stream, ch, proto);
  ExplainedStream explained;
  for (int row = 0; row <= tables.ProtoStatusCount[proto]; ++row) {
    if (tables.ProtoStatusTable[proto].Text(row, 0).empty()) continue;
    explained.rows.push_back(ExplainRow(tables.ProtoStatusTable[proto], row, stream));
  }
  explained.mode = tables.ChanMode[ch];
  explained.units = tables.ChanUnits[ch];
  explained.error = tables.ChanError[ch];
  explained.motion = tables.ChanMotion[ch] == True;

  auto& [gross, tare, net, id] = explained.fields;
  gross = Explain("Gross_Wt", GrossField(tables, proto), stream);
  tare = Explain("Tare_Wt", TareField(tables, proto), stream);
  net = Explain("Net_Wt", NetField(tables, proto), stream);
  id = Explain("ID", IdField(tables, ch), stream);
  const bool netMode = explained.mode == "NET";
  const bool weights = explained.error.empty();
  gross.taken = weights && !netMode && gross.enabled;
  tare.taken = weights && netMode && tare.enabled;
  net.taken = weights && netMode && net.enabled;
  id.taken = id.enabled;
  // The first field that is formatted settles the number mask, so the ones that this stream shows come first.
  // Only what the stream shows is formatted: the first field settles the number mask of the channel.
  const std::string& sign = tables.ProtoPolarity[proto];
  if (tare.taken) Format(tables, ch, tare, "");
  if (net.taken) Format(tables, ch, net, sign);
  if (gross.taken) Format(tables, ch, gross, sign);
  if (netMode && weights && gross.enabled && tables.ChanStatusDecimals[ch] == True) {
    gross.value = GrossOfNetMode(tables, proto, tare.value, net.value).View();
  }
  if (id.found) id.value = GeneralText(Decimal::FromText(id.raw)).View();
  return explained;
}
