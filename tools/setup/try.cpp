#include <cstdio>
#include <filesystem>
#include <fstream>

#include "config/format_file.h"
#include "core/fixed_tables.h"
#include "core/framing.h"
#include "core/setting_limits.h"
#include "core/stream_explained.h"
#include "protocol/number.h"
#include "tools/replay/capture.h"
#include "tools/setup/stream_print.h"
#include "tools/setup/verbs.h"

namespace {

constexpr int kCh = 0;
constexpr int kCustomProtocol = 10;

/// The protocol by number, by name, or as a format file, read into the tables.
int TakeProtocol(SettingsFolder& settings, const std::string& word) {
  Tables& tables = settings.Store();
  std::error_code ignored;
  if (std::filesystem::is_regular_file(word, ignored)) {
    PosixFiles disk;
    OverlayFiles files(disk);
    files.PutInPlace(FormatFilePath(tables, kCustomProtocol), word);
    MemoryNotice notice;
    PosixSystem system(tables.ProgramFolder);
    LogFiles log(tables, files, system);
    try {
      LoadFormatFile(tables, files, log, kCustomProtocol);
    } catch (const RunTimeError& fault) {
      throw SetupToolFault(files.NameSources(fault.Description()));
    }
    if (const auto& fault = tables.ProtoFault[kCustomProtocol]) {
      throw SetupToolFault(files.NameSources(fault->Description()));
    }
    return kCustomProtocol;
  }
  int proto = 0;
  while (proto <= kLastProtocol && ProtocolName(proto) != word && std::to_string(proto) != word) ++proto;
  if (proto > kLastProtocol) {
    throw SetupToolFault("\"" + word + "\" is no protocol: give its number, its name or a format file");
  }
  settings.ReadProtocol(proto);
  return proto;
}

void PrintFields(const ExplainedStream& explained) {
  for (const ExplainedField& field : explained.fields) {
    if (!field.enabled) continue;
    std::printf("  %-9s %3d-%-3d ", std::string(field.name).c_str(), field.first, field.last);
    if (!field.found) {
      std::printf("the stream is too short\n");
    } else if (!field.fault.empty()) {
      std::printf("\"%s\"  %s\n", field.raw.c_str(), field.fault.c_str());
    } else if (field.taken) {
      std::printf("\"%s\"  = %s\n", field.raw.c_str(), std::string(Trim(field.value)).c_str());
    } else {
      std::printf("\"%s\"  not used in this mode\n", field.raw.c_str());
    }
  }
}

void PrintRows(const StatusTable& table, const ExplainedStream& explained) {
  for (const ExplainedRow& row : explained.rows) {
    if (!row.enabled) continue;
    const std::string place = table.Text(row.row, 2) + (row.text ? "-" + std::to_string(row.last) : "");
    std::printf(
        "  row %-3d %c %-26s %-7s %s\n", row.row, row.matched ? '*' : ' ', table.Text(row.row, 0).substr(0, 26).c_str(),
        place.c_str(),
        !row.longEnough ? "the stream is too short" : ("found " + row.found + ", looks for " + row.expected).c_str());
  }
}

void PrintWeight(const ExplainedStream& explained) {
  std::string text;
  if (!explained.error.empty()) {
    text = explained.error + ", no weight";
  } else {
    for (const ExplainedField& field : explained.fields) {
      if (!field.value.empty()) text += std::string(field.name) + " " + std::string(Trim(field.value)) + "  ";
    }
    text += explained.units + (explained.motion ? "  motion" : "");
  }
  std::printf("  -> %s\n\n", text.c_str());
}

}  // namespace

int Try(const std::string& folder, const Words& words) {
  if (words.size() != 2) throw SetupToolFault("try takes a protocol and a capture");
  SettingsFolder settings(folder);
  Tables& tables = settings.Store();
  const int proto = TakeProtocol(settings, words[0]);
  tables.ChanProtocol[kCh] = proto;
  tables.ProtoIdEnable[kCh] = tables.ProtoIdEnable[proto];
  tables.ProtoIdPos[kCh] = tables.ProtoIdPos[proto];
  tables.ProtoIdLen[kCh] = tables.ProtoIdLen[proto];

  std::ifstream text(words[1], std::ios::binary);
  if (!text) throw SetupToolFault(words[1] + ": cannot be read");
  CaptureReader capture(text, words[1]);
  std::printf("%s\n\n", ProtocolName(proto).c_str());
  int streams = 0;
  std::size_t bytes = 0;
  while (const auto step = capture.Next()) {
    const auto* const arriving = std::get_if<ArrivingBytes>(&*step);
    if (arriving == nullptr || arriving->bytes.empty()) continue;
    bytes += arriving->bytes.size();
    tables.ChanRxChunk[kCh] = arriving->bytes;
    if (CutStream(tables, kCh) == Cut::None) continue;
    const std::string received = tables.ChanStream[kCh];
    const ExplainedStream explained = ExplainStream(tables, kCh);
    std::printf("stream %d, %s, %zu characters\n%s", ++streams, capture.Place().c_str(), received.size(),
                PrintedStream(received).c_str());
    PrintFields(explained);
    PrintRows(tables.ProtoStatusTable[proto], explained);
    PrintWeight(explained);
  }
  if (streams > 0) return 0;
  std::printf("%zu characters, and no terminator (character %d) among them: no stream\n", bytes,
              tables.ProtoTerminator[proto] == 0 ? 10 : tables.ProtoTerminator[proto]);
  return 1;
}
