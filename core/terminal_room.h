#pragma once

#include <string_view>

/// How the opening of a terminal's channel has ended.
enum class TerminalLinkState {
  Up,
  NextPass,  ///< the registration has just been made; the channel is opened by the next pass over the channels
  Down
};

/// What the engine asks of the terminal link and the database work behind it.
class TerminalRoom {
 public:
  virtual ~TerminalRoom() = default;
  virtual void OpenWorkspaces() = 0;
  virtual void CloseWorkspaces() = 0;
  /// Prepares an ArcNet channel and registers with the terminal library. `again`: after its setup.
  virtual TerminalLinkState OpenArcNet(int ch, bool again) = 0;
  /// Called in each tick for an unconnected channel: ends what was under way on it, and tries the registration again
  /// where a retry is due.
  virtual void ServeUnconnected(int ch) = 0;
  /// Reads the weight of an ArcNet channel.
  virtual void ReadArcNet(int ch) = 0;
  /// Serves a channel of protocol 0 in place of the reception cycle.
  virtual void ServeDatabase(int ch) = 0;
  /// Tells the client of channel `ch` that the database has refused its statement.
  virtual void AnswerError(int ch) = 0;
  /// `VantCloseProcess`: ends the registration.
  virtual void CloseProcess() = 0;
  /// Gives up the statements of all channels that are still under way.
  virtual void AbandonStatements() = 0;
};
