#pragma once

/// Action numbers of `CfgProc`.
namespace CfgAction {
inline constexpr int TablesToScreen = 1;
inline constexpr int ScreenToTables = 2;
inline constexpr int ApplySerialSettings = 3;
inline constexpr int ReadChannelFile = 4;
inline constexpr int WriteChannelFile = 5;
inline constexpr int RestoreChannelDefaults = 6;
inline constexpr int PortTrial = 7;
inline constexpr int PutSavedSerialSettingsBack = 8;
inline constexpr int SaveSerialSettings = 9;
inline constexpr int ReadFormatFile = 10;
inline constexpr int WriteFormatFile = 11;
inline constexpr int ProtocolToScreen = 13;
inline constexpr int ScreenToProtocol = 14;
inline constexpr int ReadSystemFile = 15;
inline constexpr int WriteSystemFile = 16;
inline constexpr int DisableChannel = 17;
}  // namespace CfgAction

/// The one entry to all configuration work.
class Configuration {
 public:
  virtual ~Configuration() = default;
  /// `number` is a channel, or for the format actions a protocol. An unknown action does nothing.
  /// Raises what the files raise, with file, line and field in the description. What is wrong with a format file
  /// is kept in `ProtoFault` as well.
  virtual void CfgProc(int action, int number) = 0;
  /// Reads which channel may use which database. Raises what is wrong with the file of rights, when all of it has been
  /// read.
  virtual void ReadDatabaseRights() = 0;
};
