#include "config/format_file.h"

#include <memory>
#include <string>
#include <vector>

#include "config/cfg_line.h"
#include "core/fixed_tables.h"
#include "core/reload.h"
#include "core/setting_limits.h"

namespace {

template <int Kind>
CfgCell CommandText(Tables& tables, int proto, int command) {
  return &tables.ProtoCmdText[Kind][command][proto];
}

CfgCell CommandEnabled(Tables& tables, int proto, int command) { return &tables.ProtoCmdEnabled[command][proto]; }

/// Lines 1 to 6. The defaults are what a protocol without a file runs with.
constexpr CfgFieldRow kHeadLines[][3] = {
    {{"ProtoReserved", SettingOf<&Tables::ProtoReserved>},
     {"ProtoStartChar", SettingOf<&Tables::ProtoStartChar>, {}, -1, 255},  // -1, as 0, is none
     {"ProtoTerminator", SettingOf<&Tables::ProtoTerminator>, {}, 0, 255}},
    {{"ProtoGrossPos", SettingOf<&Tables::ProtoGrossPos>, 0},
     {"ProtoGrossLen", SettingOf<&Tables::ProtoGrossLen>, 0},
     {"ProtoGrossEnable", SettingOf<&Tables::ProtoGrossEnable>, false}},
    {{"ProtoTarePos", SettingOf<&Tables::ProtoTarePos>, 0},
     {"ProtoTareLen", SettingOf<&Tables::ProtoTareLen>, 0},
     {"ProtoTareEnable", SettingOf<&Tables::ProtoTareEnable>, false}},
    {{"ProtoNetPos", SettingOf<&Tables::ProtoNetPos>, 0},
     {"ProtoNetLen", SettingOf<&Tables::ProtoNetLen>, 0},
     {"ProtoNetEnable", SettingOf<&Tables::ProtoNetEnable>, false}},
    {{"ProtoIdPos", SettingOf<&Tables::ProtoIdPos>, 0},
     {"ProtoIdLen", SettingOf<&Tables::ProtoIdLen>, 0},
     {"ProtoIdEnable", SettingOf<&Tables::ProtoIdEnable>, false}},
    {{"ProtoCmdStartChar", SettingOf<&Tables::ProtoCmdStartChar>},
     {"ProtoCmdTerminator", SettingOf<&Tables::ProtoCmdTerminator>},
     {"ProtoMaxStream", SettingOf<&Tables::ProtoMaxStream>, 48, 0, kLongestStream}},
};

/// Lines 7 to 16, one a command.
constexpr CfgFieldRow kCommandLine[] = {
    {"ProtoCmdText row 0", CommandText<0>},
    {"ProtoCmdText row 1", CommandText<1>},
    {"ProtoCmdText row 2", CommandText<2>},
    {"ProtoCmdEnabled", CommandEnabled},
};

constexpr std::string_view kStatusColumns[StatusTable::kFileColumns] = {
    "ProtoStatusTable column 0", "ProtoStatusTable column 1", "ProtoStatusTable column 2",
    "ProtoStatusTable column 3", "ProtoStatusTable column 4", "ProtoStatusTable column 5"};

/// Puts one status line into the table and returns true if the line has a name.
bool ReadStatusLine(CfgReader& reader, StatusTable& table, int row) {
  for (int column = 0; column < StatusTable::kFileColumns; ++column) {
    const std::string_view name = kStatusColumns[column];
    std::optional<std::string> cell = reader.Cell(name, column == StatusTable::kFileColumns - 1);
    if (row >= StatusTable::kRows) {
      reader.Refuse(ErrorNumber::SubscriptOutOfRange, name,
                    "a status table has at most " + std::to_string(StatusTable::kRows) + " lines");
    }
    if (column == 0 && !cell) cell = "";
    table.SetCell(row, column, std::move(cell));
  }
  return !table.Text(row, 0).empty();
}

/// What a file gives to tell that does not make it unusable, one line of the error log each.
using Remarks = std::vector<std::string>;

/// Nothing of a table without a row that ends it would be walked: no sign, no point, no fault of the device.
RunTimeError NotEnded(const CfgReader& reader) {
  return {ErrorNumber::InputPastEnd, "Input past end of file: " + reader.PlaceOfLine() +
                                         ": the status table is not ended, so that none of its rows would count; end "
                                         "it with a row of six empty texts (,,,,,)"};
}

bool CarriesStatusDecimals(const Tables& tables, int proto) { return proto < tables.ProtoFormatMask.Size(); }

std::string DecimalsNotCarried(const CfgReader& reader, const std::string& rowName) {
  return reader.PlaceOfLine() + ": custom formats 24 and up cannot take the decimal places from a status row (" +
         rowName + "); use custom format 1 to 23, or choose Decimal Places on the channel and remove these rows";
}

/// A channel is decoding with the record that is in the tables.
bool IsInUse(const Tables& tables, int proto) {
  for (int ch = 0; ch <= tables.MaxChannel; ++ch) {
    if (tables.ChanConnected[ch] == True && tables.ChanProtocol[ch] == proto) return true;
  }
  return false;
}

/// Reads the whole content, and then puts it into the tables at once. A table that is not ended is noted in `fault`; a
/// channel that decodes with the record goes on with the one that it has.
Remarks ReadFormat(Tables& tables, const std::string& content, const std::string& path, int proto,
                   std::optional<RunTimeError>& fault) {
  CfgReader reader(content, path);
  CfgRecord record;
  for (CfgLine line : kHeadLines) record.Read(reader, line, tables, proto);
  for (int command = 0; command < kCommandRows; ++command) {
    record.Read(reader, kCommandLine, tables, proto, command);
  }
  Remarks remarks = record.Remarks();
  const auto status = std::make_unique<StatusTable>(tables.ProtoStatusTable[proto]);
  status->Clear();
  std::int32_t firstUnused = -1;
  bool decimalsTold = CarriesStatusDecimals(tables, proto);
  int row = 0;
  for (; !reader.AtEnd(); ++row) {
    const bool used = ReadStatusLine(reader, *status, row);
    if (!used && firstUnused < 0) firstUnused = row;
    if (decimalsTold || firstUnused >= 0 || status->Rule(row).action != StatusAction::DecimalPlace) continue;
    remarks.push_back(DecimalsNotCarried(reader, status->Text(row, 0)));
    decimalsTold = true;
  }
  if (row > 0 && firstUnused < 0) fault = NotEnded(reader);
  if (fault && IsInUse(tables, proto)) return remarks;
  record.Commit();
  tables.ProtoStatusTable[proto] = std::move(*status);
  tables.ProtoStatusCount[proto] = firstUnused;
  FindDecimalsAnew(tables, proto);
  return remarks;
}

/// Without a file the protocol runs with cleared fields. A channel that decodes with the record would show 0 for a
/// weight from then on, so it goes on with the one that it has.
void ClearFields(Tables& tables, int proto) {
  if (IsInUse(tables, proto)) return;
  for (CfgLine line : kHeadLines) RestoreCfgDefaults(line, tables, proto);
}

}  // namespace

std::string FormatFilePath(const Tables& tables, int proto) {
  const std::string& name = tables.ProtoFileName[proto];
  if (name.empty()) {
    throw RunTimeError(ErrorNumber::FileNotFound, "Protocol " + std::to_string(proto) + " has no format file");
  }
  return PathInProgramFolder(tables, name);
}

void LoadFormatFile(Tables& tables, Files& files, Log& log, int proto) {
  tables.ProtoFixedFormat[proto] = AsBoolean(proto <= tables.LastFixedProtocol);
  tables.ProtoFault[proto].emplace(ErrorNumber::Internal, "The format file has not been read to its end");
  Remarks remarks;
  try {
    const std::string path = FormatFilePath(tables, proto);
    const std::string content = files.OpenAndRead(path);
    std::optional<RunTimeError> fault;
    if (content.empty()) {
      ClearFields(tables, proto);
      remarks = {path + " STD Format File Not Found."};
    } else {
      remarks = ReadFormat(tables, content, path, proto, fault);
    }
    tables.ProtoFault[proto] = fault;
    tables.ProtoLoaded[proto] = True;
  } catch (const RunTimeError& fault) {
    tables.ProtoFault[proto] = fault;
    throw;
  }
  for (const std::string& remark : remarks) log.WriteLog(LogType::Error, remark);
}

void SaveFormatFile(Tables& tables, Files& files, int proto) {
  CfgWriter writer;
  for (CfgLine line : kHeadLines) WriteCfgLine(writer, line, tables, proto);
  for (int command = 0; command < kCommandRows; ++command) {
    WriteCfgLine(writer, kCommandLine, tables, proto, command);
  }
  const StatusTable& status = tables.ProtoStatusTable[proto];
  for (int row = 0; row < StatusTable::kFileRows; ++row) {
    for (int column = 0; column < StatusTable::kFileColumns; ++column) writer.Cell(status.Cell(row, column));
    writer.EndLine();
  }
  files.Replace(FormatFilePath(tables, proto), writer.Content());
}
