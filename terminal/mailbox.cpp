#include "terminal/mailbox.h"

#include <cmath>

#include "core/channel_state.h"
#include "core/engine.h"
#include "core/lamps.h"
#include "core/sentences.h"
#include "protocol/number.h"
#include "terminal/audit_log.h"
#include "terminal/database_command.h"
#include "terminal/packets.h"
#include "terminal/reply_dates.h"

namespace {

constexpr std::size_t kTagSize = 5;
constexpr std::int16_t kSeparator = '!';
constexpr std::int16_t kMostFields = 200;  ///< elements after which no further record is loaded
constexpr std::int32_t kLastIndex = 1'000'000'000;

/// The text of a field up to its NUL, without blanks at its ends; nothing if it is blank or has no NUL.
std::string_view FieldText(std::string_view record) {
  const std::size_t end = record.find('\0');
  return end == std::string_view::npos ? std::string_view{} : Trim(record.substr(0, end));
}

/// Whole part of the number behind a tag; what no table can hold is kept below it.
std::int32_t WholePart(std::string_view text) {
  const double number = std::trunc(NumericValue(text));
  return static_cast<std::int32_t>(std::min(std::max(number, -1e9), 1e9));
}

void MoveToNextPacket(Tables& tables, int ch) {
  if (tables.ChanPacketIndex[ch] < kLastIndex) tables.ChanPacketIndex[ch] += kPacketElements;
}

}  // namespace

/// What a mailbox may hold, in the order in which it is looked for. Anything else is left alone, also the replies that
/// the terminal has not cleared yet.
struct Mailbox::Command {
  std::string_view tag;
  void (Mailbox::*serve)(int ch, const std::string& text);
};

const Mailbox::Command Mailbox::kCommands[] = {
    {"SQL3:", &Mailbox::RunStatement},
    {"****:", &Mailbox::AwaitAcknowledgement},
    {"ACK1:", &Mailbox::TakeAcknowledgement},
    {"DONE:", &Mailbox::EndTransaction},
    {"DADD:", &Mailbox::SendDate},
    {"DLOT:", &Mailbox::SendLot},
    {"FMT1:", &Mailbox::TakeFormat},
    {"TST1:", &Mailbox::SendTest},
};

void Mailbox::Serve(int ch) {
  Tables& tables = engine_.tables;
  if (!data_.Read(tables.ChanPathCommand[ch], kShortRecord, tables.ShortFieldBuffer)) {
    UpdateStatus(engine_, ch, Caption::NetworkIdError);
    tables.ChanIndicator[Item::Error][ch] = True;
    tables.ChanDirty[Item::Error][ch] = True;
    Say(tables, engine_.notice, Occasion::ArcNetNotRead, ch);
    return;
  }
  tables.ChanIndicator[Item::Error][ch] = False;
  tables.ChanDirty[Item::Error][ch] = True;
  TurnRXLedON(tables, engine_.mainForm, ch);
  const std::size_t end = tables.ShortFieldBuffer.find('\0');
  if (end == std::string::npos) return;
  const std::string_view text = FieldText(tables.ShortFieldBuffer);
  SetCaption(tables, ch, text);
  const std::string& command = tables.ChanStatusText[ch];
  for (const Command& known : kCommands) {
    if (std::string_view(command).substr(0, kTagSize) != known.tag) continue;
    return (this->*known.serve)(ch, std::string(command));  // steps of the command write over the caption
  }
}

void Mailbox::Show(int ch, std::string_view caption) { UpdateStatus(engine_, ch, caption); }

std::string Mailbox::PacketStatus(int ch, std::string_view before) const {
  return std::string(before) + std::to_string(engine_.tables.ChanPacketIndex[ch]) + " ...";
}

void Mailbox::TransmitLampOn(int ch) { TurnTXLedON(engine_.tables, engine_.mainForm, ch); }

// Statements

/// Collects database and statement; false if one of them is not there.
bool Mailbox::ReadStatement(int ch) {
  Tables& tables = engine_.tables;
  if (!data_.Read(tables.ChanPathDbName[ch], kShortRecord, tables.ShortFieldBuffer)) return false;
  if (tables.ShortFieldBuffer.find('\0') != std::string::npos && !Trim(tables.ShortFieldBuffer).empty()) {
    tables.ChanDbName[ch] = FieldText(tables.ShortFieldBuffer);
    tables.ChanDirty[Item::StatusCaption][ch] = True;
  }
  for (int field = 1; field <= tables.ChanSqlLines[ch]; ++field) {
    const std::string& path = tables.ChanPathPacket[ch][field];
    if (!data_.Read(path, kPacketRecord, tables.PacketFieldBuffer)) continue;
    if (tables.PacketFieldBuffer.find('\0') == std::string::npos) continue;
    tables.ChanDbQuery[ch] += FieldText(tables.PacketFieldBuffer);
    tables.ChanDirty[Item::StatusCaption][ch] = True;
  }
  tables.ChanDbKeywordPos[ch].Fill(0);
  return !tables.ChanDbName[ch].empty() && !tables.ChanDbQuery[ch].empty();
}

void Mailbox::RunStatement(int ch, const std::string& text) {
  Tables& tables = engine_.tables;
  tables.ChanDbReply[ch].clear();
  tables.ChanDbQuery[ch].clear();
  tables.ChanDbInText[ch].clear();
  tables.ChanSqlLines[ch] = WholePart(std::string_view(text).substr(kTagSize));
  if (ReadStatement(ch)) commands_.Start(ch, *this);
}

void Mailbox::AnswerExecuted(int ch) {
  Tables& tables = engine_.tables;
  tables.ChanDbReply[ch] = "!EXECUTED";
  engine_.mainForm.SetTrayPicture(TrayPicture::iXmit);
  WriteAuditLog(engine_, ch, LogType::Transmitted, tables.ChanDbReply[ch]);
  tables.ChanIndicator[Item::Tx][ch] = True;
  tables.ChanDirty[Item::Tx][ch] = True;
  engine_.mainForm.DrawItem(ch, Item::Tx);
  tables.ChanDbReply[ch].clear();
  if (data_.WriteMailbox(ch, "!")) {
    TransmitLampOn(ch);
  } else {
    engine_.notice.Beep();
  }
}

/// Record after record, field after field, then date and time: the table knows no boundary between records.
void Mailbox::LoadFound(int ch, const Recordset& result) {
  Tables& tables = engine_.tables;
  const char separator = static_cast<char>(tables.DbSeparator);
  const std::string count = std::to_string(result.recordCount);
  std::string& reply = tables.ChanDbReply[ch];
  std::int32_t& used = tables.ChanDbRowCount[ch];
  Show(ch, "Loading Results...");
  reply = "!COUNT=" + count + separator;
  Show(ch, count + " Record(s) Found...");
  tables.ChanDbFound[ch] = True;
  used = 0;
  tables.DbFieldCount = 0;
  for (std::size_t value = 0; value < result.values.size() && tables.DbFieldCount < kMostFields;) {
    for (std::size_t field = 0; field < result.fieldCount; ++field, ++value) {
      reply += result.values.at(value) + separator;
      tables.ChanDbRows[ch][used] = result.values.at(value);
      ++tables.DbFieldCount;
      ++used;
    }
  }
  const std::string now = engine_.system.DateTimeText();
  tables.ChanDbRows[ch][used] = ShortDate(now);
  ++tables.DbFieldCount;
  ++used;
  tables.ChanDbRows[ch][used] = ShortTime(now);
  ++used;
  reply += ShortDate(now) + separator + ShortTime(now) + separator;
}

void Mailbox::LoadNotFound(int ch) {
  Tables& tables = engine_.tables;
  const std::string now = engine_.system.DateTimeText();
  const std::string elements[] = {"NOT FOUND", ShortDate(now), ShortTime(now)};
  tables.ChanDbFound[ch] = False;
  std::string& reply = tables.ChanDbReply[ch];
  reply = "!";
  for (int element = 0; element < 3; ++element) {
    tables.ChanDbRows[ch][element] = elements[element];
    reply += elements[element] + static_cast<char>(tables.DbSeparator);
  }
  Show(ch, "Record Not Found...");
}

void Mailbox::AnswerResult(int ch, const Recordset& result) {
  Tables& tables = engine_.tables;
  tables.ChanDbReply[ch].clear();
  tables.DbSeparator = kSeparator;
  for (int element = 0; element < kDbRows - 1; ++element) tables.ChanDbRows[ch][element].clear();
  if (result.recordCount > 0) {
    LoadFound(ch, result);
  } else {
    LoadNotFound(ch);
  }
  tables.DbFieldCount = 0;
  tables.ChanDbReply[ch] += std::string("!") + static_cast<char>(tables.DbSeparator);
  engine_.mainForm.SetTrayPicture(TrayPicture::iXmit);
  WriteAuditLog(engine_, ch, LogType::Transmitted, tables.ChanDbReply[ch]);
  TransmitLampOn(ch);
  if (tables.ChanDbFound[ch] == True) {
    SendFirstPacket(ch, result);
  } else {
    data_.WriteMailbox(ch, "@");
  }
  tables.ChanDbReply[ch].clear();
}

void Mailbox::AnswerError(int ch) {
  WriteAuditLog(engine_, ch, LogType::Transmitted, "!ERROR");
  if (data_.WriteMailbox(ch, "^ERROR")) {
    TransmitLampOn(ch);
  } else {
    engine_.notice.Beep();
  }
}

// Packets

/// Writes the three fields of the packet; a failure shows `onError`, if that is a text, and the sequence goes on.
void Mailbox::WritePacketFields(int ch, std::string_view onError) {
  Tables& tables = engine_.tables;
  for (int field = 1; field <= kPacketFields; ++field) {
    BuildPacketField(tables, ch, field);
    if (data_.Write(tables.ChanPathPacket[ch][field], tables.PacketFieldBuffer)) {
      TransmitLampOn(ch);
    } else if (!onError.empty()) {
      Show(ch, onError);
    }
  }
}

/// The time of the packet is not set here, so that the first one has the time-out of the transfer before.
void Mailbox::SendFirstPacket(int ch, const Recordset& result) {
  Tables& tables = engine_.tables;
  tables.ChanPacketIndex[ch] = 0;
  Show(ch, PacketStatus(ch, "Xmit Packet "));
  WritePacketFields(ch, {});
  const std::string notice = PacketNotice(result.recordCount, tables.ChanDbRowCount[ch]);
  Show(ch, PacketStatus(ch, "Packet Status "));
  if (!data_.WriteMailbox(ch, notice)) Show(ch, "VantAPI > PutAckStatus");
  data_.WriteMailbox(ch, notice);
}

void Mailbox::SendNextPacket(int ch) {
  Tables& tables = engine_.tables;
  Show(ch, PacketStatus(ch, "Xmit Packet "));
  WritePacketFields(ch, "Packet Error");
  Show(ch, PacketStatus(ch, "Packet Status "));
  if (data_.WriteMailbox(ch, PacketNotice(0, tables.ChanDbRowCount[ch]))) {
    tables.ChanPacketTime[ch] = static_cast<float>(engine_.system.SecondsSinceMidnight());
  } else {
    Show(ch, "Packet Error");
  }
}

void Mailbox::CloseTransfer(int ch) {
  Show(ch, PacketStatus(ch, "Packet OK "));
  if (!data_.WriteMailbox(ch, engine_.tables.ChanDbFound[ch] == True ? "!" : "@")) Show(ch, "Packet Error");
}

/// The terminal has not answered yet. Behind the time-out the index goes on as if it had; nothing is sent again.
void Mailbox::AwaitAcknowledgement(int ch, const std::string&) {
  Tables& tables = engine_.tables;
  const std::string packet = "Packet " + std::to_string(commands_.RecordsOfThisTick());
  Show(ch, packet + " Sent...");
  const float elapsed =
      std::fabs(static_cast<float>(engine_.system.SecondsSinceMidnight()) - tables.ChanPacketTime[ch]);
  const float limit = static_cast<float>(tables.ChanTimeout[ch]) / 1000;
  if (limit >= elapsed) return;
  Show(ch, packet + "  Timeout...");
  MoveToNextPacket(tables, ch);
}

void Mailbox::TakeAcknowledgement(int ch, const std::string&) {
  Tables& tables = engine_.tables;
  MoveToNextPacket(tables, ch);
  Show(ch, "Packet OK");
  if (tables.ChanPacketIndex[ch] >= tables.ChanDbRowCount[ch] || tables.ChanDbFound[ch] == False) {
    CloseTransfer(ch);
  } else {
    SendNextPacket(ch);
  }
}

void Mailbox::EndTransaction(int ch, const std::string&) {
  engine_.tables.ChanPacketIndex[ch] = 0;
  Show(ch, Caption::Ready);
  if (!data_.WriteMailbox(ch, {})) Show(ch, "Packet Error");
}

// Small services

std::string Mailbox::MakeLotNumber(int ch) {
  return engine_.tables.ChanLotValue[ch] = LotNumber(engine_.system.DateTimeText());
}

/// The reply does not depend on the number of days asked for; terminals' programs are written against it.
void Mailbox::SendDate(int ch, const std::string& text) {
  engine_.tables.ChanLotDays[ch] = NumericValue(std::string_view(text).substr(kTagSize));
  const std::string lot = MakeLotNumber(ch);
  Show(ch, "Sending Date...");
  Show(ch, data_.WriteMailbox(ch, "PADD:" + lot + DateOfLotNumber(lot)) ? Caption::Ready : "VantAPI > Date Add Error");
}

void Mailbox::SendLot(int ch, const std::string&) {
  const std::string lot = MakeLotNumber(ch);
  Show(ch, "Sending Lot #...");
  Show(ch, data_.WriteMailbox(ch, "PLOT:" + lot) ? Caption::Ready : "VantAPI > Lot # Error");
}

/// The colon stays in front of the number, which is 0 therefore; terminals' programs do not rely on it.
void Mailbox::TakeFormat(int ch, const std::string& text) {
  engine_.tables.ChanSqlLines[ch] = WholePart(std::string_view(text).substr(kTagSize - 1));
}

void Mailbox::SendTest(int ch, const std::string&) {
  Tables& tables = engine_.tables;
  std::string pattern = "!";
  for (int digit = 1; digit <= 77; ++digit) pattern += static_cast<char>('0' + digit % 10);
  SharedData::FillRecord(tables.TestFieldBuffer, pattern, kTestRecord);
  const auto record = std::string_view(tables.TestFieldBuffer).substr(0, static_cast<std::size_t>(kPacketRecord));
  if (data_.Write(tables.ChanPathCommand[ch], record)) {
    TransmitLampOn(ch);
  } else {
    Show(ch, "Error Writing Var...");
  }
}
