#include "terminal/serial_client.h"

#include "core/channel_state.h"
#include "core/engine.h"
#include "core/error_trap.h"
#include "core/lamps.h"
#include "terminal/audit_log.h"
#include "terminal/command_line.h"
#include "terminal/database_command.h"
#include "terminal/reply_dates.h"

namespace {

/// Characters that may wait: far more than any statement has.
constexpr std::size_t kMostWaiting = 16384;
constexpr int kOutOfStringSpace = 14;

std::string Line(std::string_view text) { return "\"" + std::string(text) + "\"\n"; }

const std::string kEndLine = Line("!");

bool BytesWaiting(Tables& tables, int ch, SerialPort& port) {
  std::size_t waiting = 0;
  ResumeNextOnClosedPort(tables, ch, [&] { waiting = port.InBufferCount(); });
  return waiting > 0;
}

}  // namespace

/// Takes the first line away from what has been received, with its LF; false if none is whole.
bool SerialClient::TakeLine(int ch) {
  Tables& tables = engine_.tables;
  std::string& buffer = tables.ChanRxBuffer[ch];
  if (lineIsCut_[ch]) {
    const std::size_t end = buffer.find('\n');
    lineIsCut_[ch] = end == std::string::npos;
    buffer.erase(0, lineIsCut_[ch] ? buffer.size() : end + 1);
  }
  if (buffer.size() > kMostWaiting) {
    lineIsCut_[ch] = buffer.back() != '\n';
    buffer.clear();
    throw RunTimeError(kOutOfStringSpace,
                       "More than " + std::to_string(kMostWaiting) +
                           " characters wait, of a line without an end or of many; they are dropped");
  }
  const std::size_t end = buffer.find('\n');
  if (end == std::string::npos) return false;
  tables.ChanStream[ch] = buffer.substr(0, end + 1);
  buffer.erase(0, end + 1);
  return true;
}

void SerialClient::Serve(int ch) {
  Tables& tables = engine_.tables;
  tables.ChanDbFound[ch] = False;
  SerialPort& port = engine_.ports.Port(ch);
  if (!BytesWaiting(tables, ch, port)) return;
  TurnRXLedON(tables, engine_.mainForm, ch);
  std::string& buffer = tables.ChanRxBuffer[ch];
  if (port.TakeLineLoss()) buffer.erase(buffer.rfind('\n') + 1);  // what comes now does not continue the last line
  port.Input(tables.ChanRxChunk[ch]);
  buffer += tables.ChanRxChunk[ch];
  if (!TakeLine(ch)) return;
  const std::string& line = tables.ChanStream[ch];
  WriteAuditLog(engine_, ch, LogType::Received, line);
  tables.ChanDbReply[ch].clear();
  tables.ChanDbQuery[ch].clear();
  tables.ChanDbInText[ch].clear();
  ParseDBCmd(line, "DBNAME", tables.ChanDbName[ch]);
  ParseDBCmd(line, "QUERY", tables.ChanDbQuery[ch]);
  if (tables.ChanDbName[ch].empty() || tables.ChanDbQuery[ch].empty()) return;
  commands_.Start(ch, *this);
}

void SerialClient::Show(int ch, std::string_view caption) { SetCaption(engine_.tables, ch, caption); }

void SerialClient::Send(int ch) {
  Tables& tables = engine_.tables;
  engine_.mainForm.SetTrayPicture(TrayPicture::iXmit);
  WriteAuditLog(engine_, ch, LogType::Transmitted, tables.ChanDbReply[ch]);
  tables.ChanIndicator[Item::Tx][ch] = True;
  tables.ChanDirty[Item::Tx][ch] = True;
  engine_.mainForm.DrawItem(ch, Item::Tx);
  tables.ChanTxQueue[ch] = tables.ChanDbReply[ch];
  tables.ChanDbReply[ch].clear();
}

void SerialClient::AnswerExecuted(int ch) {
  engine_.tables.ChanDbReply[ch] = Line("EXECUTED") + kEndLine;
  Send(ch);
}

void SerialClient::AnswerResult(int ch, const Recordset& result) {
  Tables& tables = engine_.tables;
  std::string& reply = tables.ChanDbReply[ch];
  if (result.recordCount > 0) {
    Show(ch, "Loading Results...");
    reply = Line("COUNT=" + std::to_string(result.recordCount));
    for (std::size_t field = 0; field < result.fieldCount; ++field) reply += Line(result.values.at(field));
  } else {
    reply = Line("NOT FOUND");
  }
  const std::string now = engine_.system.DateTimeText();
  reply += Line(ShortDate(now)) + Line(ShortTime(now)) + kEndLine;
  Send(ch);
}

/// Past the queue: the client is to hear of it at once.
void SerialClient::AnswerError(int ch) {
  const std::string reply = "\"ERROR\"\n" + kEndLine;
  WriteAuditLog(engine_, ch, LogType::Transmitted, reply);
  ResumeNextOnClosedPort(engine_.tables, ch, [&] { engine_.ports.Port(ch).Output(reply); });
}
