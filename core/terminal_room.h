#pragma once

/// What the engine asks of the terminal link and the database work behind it.
class TerminalRoom {
 public:
  virtual ~TerminalRoom() = default;
  virtual void OpenWorkspaces() = 0;
  virtual void CloseWorkspaces() = 0;
  /// Prepares an ArcNet channel and registers with the terminal library; False if it cannot be had.
  virtual bool OpenArcNet(int ch) = 0;
  /// Tries the registration again where a retry is due; called in each tick for an unconnected channel.
  virtual void RetryRegistration(int ch) = 0;
  /// Reads the weight of an ArcNet channel.
  virtual void ReadArcNet(int ch) = 0;
  /// Serves a channel of protocol 0 in place of the reception cycle.
  virtual void ServeDatabase(int ch) = 0;
  /// `VantCloseProcess`: ends the registration.
  virtual void CloseProcess() = 0;
};
