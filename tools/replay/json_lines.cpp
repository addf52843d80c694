#include "tools/replay/json_lines.h"

#include <array>

using Json = nlohmann::ordered_json;

namespace {

constexpr int kLamps = 8;

std::string Hex(std::string_view bytes) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  for (unsigned char byte : bytes) {
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
  }
  return text;
}

Json ToJson(const OpcValue& value) {
  struct Visitor {
    Json operator()(std::monostate) const { return nullptr; }
    Json operator()(std::int16_t number) const { return number; }
    Json operator()(double number) const { return number; }
    Json operator()(const std::string& text) const { return ToUtf8(text); }
  };
  return std::visit(Visitor{}, value);
}

/// Tables of texts and numbers that are shown as they are.
void AddTables(Json& json, const Tables& t, int ch) {
  json["ScanTick"] = t.ScanTick;
  json["ChanStatusBits"] = t.ChanStatusBits[ch];
  json["ChanPrevStatusBits"] = t.ChanPrevStatusBits[ch];
  const std::pair<const char*, const ChannelTable<std::string>*> texts[] = {{"ChanStatusText", &t.ChanStatusText},
                                                                            {"ChanGross", &t.ChanGross},
                                                                            {"ChanTare", &t.ChanTare},
                                                                            {"ChanNet", &t.ChanNet},
                                                                            {"ChanPrevGross", &t.ChanPrevGross},
                                                                            {"ChanPrevTare", &t.ChanPrevTare},
                                                                            {"ChanPrevNet", &t.ChanPrevNet},
                                                                            {"ChanStreamId", &t.ChanStreamId}};
  for (const auto& [name, table] : texts) json[name] = ToUtf8((*table)[ch]);
  Json& lamps = json["ChanIndicator"] = Json::array();
  for (int row = 0; row < kLamps; ++row) lamps.push_back(t.ChanIndicator[row][ch] == True);
  json["ChanDecimals"] = t.ChanDecimals[ch];
  json["ChanDecimalsKnown"] = t.ChanDecimalsKnown[ch] == True;
  json["ChanStatusDecimals"] = t.ChanStatusDecimals[ch] == True;
  json["ChanFormatMask"] = ToUtf8(t.ChanFormatMask[ch]);
  json["ChanCmdState"] = t.ChanCmdState[ch];
  json["ChanCmdStatus"] = t.ChanCmdStatus[ch];
}

void AddStream(Json& json, const Tables& t, int ch, const TickEvents& events) {
  constexpr const char* kOutcomes[] = {"silent", "partial", "stream"};
  json["error"] = nullptr;
  if (events.error) {
    json["error"] = {{"number", events.error->Number()}, {"description", ToUtf8(events.error->Description())}};
  }
  json["outcome"] = kOutcomes[static_cast<int>(events.outcome)];
  const bool framed = events.outcome == TickEvents::Outcome::Stream;
  json["streamHex"] = framed ? Json(Hex(t.ChanStream[ch])) : Json(nullptr);
  json["streamLen"] = framed ? t.ChanStream[ch].size() : 0;
  json["bufferHex"] = Hex(t.ChanRxBuffer[ch]);
}

void AddOutlets(Json& json, const Replay& replay, const TickEvents& events) {
  Json& opc = json["opcWrites"] = Json::object();
  for (const auto& [item, value] : events.opcWrites) opc[std::to_string(item)] = ToJson(value);
  json["flush"] = events.flush;
  Json& dde = json["dde"] = Json::array();
  for (int item = 0; item < static_cast<int>(kDdeItemNames.size()); ++item) {
    dde.push_back(ToUtf8(replay.Topics().Request(replay.Channel(), item)));
  }
  const Device& device = replay.ChannelDevice();
  json["device"] = {{"CDeviceDesc", ToUtf8(device.CDeviceDesc)},
                    {"CDeviceID", device.CDeviceID},
                    {"CCmd", device.CCmd},
                    {"CCmdParm", device.CCmdParm},
                    {"CCmdStat", device.CCmdStat},
                    {"CGross", device.CGross},
                    {"CTare", device.CTare},
                    {"CNet", device.CNet},
                    {"CScaleStat", device.CScaleStat}};
  Json& portOut = json["portOut"] = Json::array();
  for (const std::string& text : events.portOut) portOut.push_back(Hex(text));
}

void AddLines(Json& json, const TickEvents& events) {
  Json& weights = json["weightLog"] = Json::array();
  for (const std::string& line : events.weightLog) weights.push_back(ToUtf8(line));
  Json& log = json["log"] = Json::array();
  for (const TickEvents::LogLine& line : events.log) {
    log.push_back({{"kind", line.kind}, {"text", ToUtf8(line.text)}});
  }
}

}  // namespace

std::string ToUtf8(std::string_view bytes) {
  try {
    Json(bytes).dump();
    return std::string(bytes);
  } catch (const Json::type_error&) {  // no valid UTF-8
    std::string text;
    for (unsigned char byte : bytes) {
      if (byte < 0x80) {
        text += static_cast<char>(byte);
      } else {
        text += static_cast<char>(0xC0 | byte >> 6);
        text += static_cast<char>(0x80 | (byte & 0x3F));
      }
    }
    return text;
  }
}

Json ToJson(const Replay& replay, const TickEvents& events) {
  Json json;
  AddTables(json, replay.Store(), replay.Channel());
  AddStream(json, replay.Store(), replay.Channel(), events);
  AddOutlets(json, replay, events);
  AddLines(json, events);
  return json;
}
