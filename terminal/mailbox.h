#pragma once

#include <string>
#include <string_view>

#include "terminal/database_client.h"
#include "terminal/shared_data.h"

class DatabaseCommands;
struct Engine;

/// The packet protocol of terminals on the network, whose programs use this system as their database. Both ends share
/// the mailbox field of the terminal: its text is the whole state, and the last writer wins. A text that gets no reply
/// stays there and is served again by each tick.
class Mailbox : public DatabaseClient {
 public:
  Mailbox(Engine& engine, SharedData& data, DatabaseCommands& commands)
      : engine_(engine), data_(data), commands_(commands) {}

  /// Reads the mailbox of channel `ch` and does what its text asks for.
  void Serve(int ch);

  void Show(int ch, std::string_view caption) override;
  std::string_view IdleCaption() const override { return "Ready..."; }
  void AnswerExecuted(int ch) override;
  void AnswerResult(int ch, const Recordset& result) override;
  void AnswerError(int ch) override;

 private:
  struct Command;
  static const Command kCommands[];

  void RunStatement(int ch, const std::string& text);
  void AwaitAcknowledgement(int ch, const std::string& text);
  void TakeAcknowledgement(int ch, const std::string& text);
  void EndTransaction(int ch, const std::string& text);
  void SendDate(int ch, const std::string& text);
  void SendLot(int ch, const std::string& text);
  void TakeFormat(int ch, const std::string& text);
  void SendTest(int ch, const std::string& text);

  bool ReadStatement(int ch);
  void LoadFound(int ch, const Recordset& result);
  void LoadNotFound(int ch);
  void SendFirstPacket(int ch, const Recordset& result);
  void SendNextPacket(int ch);
  void CloseTransfer(int ch);
  void WritePacketFields(int ch, std::string_view onError);
  std::string PacketStatus(int ch, std::string_view before) const;
  std::string MakeLotNumber(int ch);
  void TransmitLampOn(int ch);

  Engine& engine_;
  SharedData& data_;
  DatabaseCommands& commands_;
};
