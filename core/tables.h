#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/table.h"
#include "core/told_faults.h"
#include "protocol/status_table.h"

inline constexpr int kChannels = 32;     ///< channels that can exist, 0 to 31
inline constexpr int kCommandRows = 10;  ///< device commands a protocol
inline constexpr int kOpcTags = 7;       ///< tag rows that are set up and persisted
inline constexpr int kNoChannel = -1;    ///< value of `ReinitChannel` when no channel is to be opened again
inline constexpr std::int16_t kPrevStatusSentinel = -32765;         ///< no status word equals it
inline constexpr std::string_view kPrevWeightSentinel = "-999999";  ///< no weight text equals it
inline constexpr std::string_view kPrevStreamIdSentinel = "X789879";
inline constexpr int kPacketPaths = 7;  ///< of which 1 to 5 are filled
inline constexpr int kDbRows = 201;     ///< elements of a query's result
inline constexpr int kDbKeywords = 7;   ///< that a statement is classified by

/// Rows of `ChanIndicator` (0 to 7) and `ChanDirty` (0 to 12), which are also the cells of a row on the screen.
namespace Item {
inline constexpr int Rx = 0;
inline constexpr int Tx = 1;
inline constexpr int Motion = 2;
inline constexpr int Net = 3;
inline constexpr int Units = 4;
inline constexpr int Enabled = 5;
inline constexpr int Sql = 6;
inline constexpr int Error = 7;
inline constexpr int Description = 8;
inline constexpr int Gross = 9;
inline constexpr int Tare = 10;
inline constexpr int NetWeight = 11;
inline constexpr int StatusCaption = 12;
inline constexpr int Count = 13;
}  // namespace Item

inline constexpr bool IsLamp(int item) { return item < Item::Description; }

/// Bits of `ChanStatusBits`, the word published as SCALESTAT.
namespace StatusBit {
inline constexpr std::int16_t OutOfRange = 1;
inline constexpr std::int16_t Motion = 2;
inline constexpr std::int16_t NetMode = 4;
inline constexpr std::int16_t Pounds = 8;
inline constexpr std::int16_t Offline = 16;
}  // namespace StatusBit

/// Values of `ChanConnectUsing`; any other value connects nothing.
namespace ConnectUsing {
inline constexpr int SerialPort = 0;
inline constexpr int ArcNet = 1;
}  // namespace ConnectUsing

/// Captions of a row that more than one place writes or compares.
namespace Caption {
inline constexpr std::string_view Initializing = "Initializing...";
inline constexpr std::string_view ReInitializing = "ReInitializing...";
inline constexpr std::string_view InitializationError = "Initialization Error...";
inline constexpr std::string_view DeviceDisabled = "Device Disabled...";
inline constexpr std::string_view SettingsLost = "Settings Lost...";
inline constexpr std::string_view Ready = "Ready...";
inline constexpr std::string_view Online = "Online...";
inline constexpr std::string_view Offline = "Offline...";
inline constexpr std::string_view NetworkIdError = "Network ID Error...";
}  // namespace Caption

template <typename Element>
using ChannelTable = Table<Element, 33>;
template <typename Element>
using ProtocolTable = Table<Element, 43>;
using DdeItem = std::variant<std::monostate, double, std::int16_t>;

/// A database that a channel may use.
struct DatabaseRight {
  int ch = 0;
  std::string path{};  ///< full, without "." and ".."
  bool write = false;
};

/// All state of the system, in parallel tables by channel number (0 to `MaxChannel`; shown as number + 1) and
/// by protocol number (0 packet protocol, 1 to 9 fixed formats, 10 to 41 custom formats). Plain data: every
/// room reads and writes it directly, on the one thread.
struct Tables {
  // Channel configuration, one set a channel, persisted in the channel file.
  ChannelTable<std::int32_t> ChanProtocol;
  ChannelTable<std::int32_t> ChanConnectUsing;  ///< 0 serial port, 1 ArcNet, other values connect nothing
  ChannelTable<std::int32_t> ChanPort;          ///< COM port number minus 1
  ChannelTable<std::int32_t> ChanPortSetup;     ///< index into `PortSettingsTable`
  ChannelTable<Boolean> ChanXonXoff;
  ChannelTable<std::string> ChanDeviceID;
  ChannelTable<std::string> ChanDeviceDesc;
  ChannelTable<std::int32_t> ChanDbDriver;
  ChannelTable<std::string> ChanOtherDriver;
  ChannelTable<std::string> ChanOpcNodeName;
  ChannelTable<std::string> ChanOpcServerName;
  ChannelTable<std::string> ChanAsciiLogName;  ///< full path of the weight log
  ChannelTable<Boolean> ChanAsciiLog;
  ChannelTable<Boolean> ChanEnabled;  ///< also cleared in memory when a fatal fault disables the channel
  ChannelTable<Boolean> ChanBidirectional;
  ChannelTable<Boolean> ChanOpcEnabled;
  ChannelTable<Boolean> ChanPollForData;  ///< stored and shown, read by nothing
  ChannelTable<Boolean> ChanAuditLog;
  ChannelTable<Boolean> ChanVirtualTerminal;
  ChannelTable<Boolean> ChanInteractiveDbErrors;
  ChannelTable<Boolean> ChanDdeServer;
  ChannelTable<std::int32_t> ChanRefresh;          ///< scan ticks
  ChannelTable<std::int32_t> ChanTxDelay;          ///< milliseconds between paced characters; 0 sends none
  ChannelTable<std::int32_t> ChanTimeout;          ///< scan ticks of silence, 0 = no time-out
  Table<ChannelTable<std::string>, 8> ChanOpcTag;  ///< rows gross, tare, net, status, CMD, CMDPARM, CMDSTAT, spare
  ChannelTable<std::int32_t> ChanPrimaryUnits;     ///< index into `UnitsTable`
  ChannelTable<std::int32_t> ChanDecimalPlaces;    ///< index into `DecimalMaskTable`; 0 = take it from the stream
  ChannelTable<Boolean> ChanDataMap;

  // Protocol definition, one set a protocol, persisted in the format file. Positions count from 1.
  ProtocolTable<std::string> ProtoFileName;  ///< begins with the path separator, written as a backslash
  ProtocolTable<std::int32_t>
      ProtoMaxStream;  ///< characters kept; 0 becomes 48 at first use, 48 for what is not possible
  ProtocolTable<std::int32_t> ProtoTerminator;  ///< character code; 0 becomes 10 at first use
  ProtocolTable<std::int32_t> ProtoStartChar;   ///< character code, 0 and -1 = none
  ProtocolTable<std::int32_t> ProtoGrossPos, ProtoGrossLen;
  ProtocolTable<Boolean> ProtoGrossEnable;
  ProtocolTable<std::int32_t> ProtoTarePos, ProtoTareLen;
  ProtocolTable<Boolean> ProtoTareEnable;
  ProtocolTable<std::int32_t> ProtoNetPos, ProtoNetLen;
  ProtocolTable<Boolean> ProtoNetEnable;
  ProtocolTable<std::int32_t> ProtoIdPos, ProtoIdLen;  ///< used with a channel number as index
  ProtocolTable<Boolean> ProtoIdEnable;
  ProtocolTable<Boolean> ProtoFixedFormat;       ///< set by each load, read by nothing
  ProtocolTable<std::int32_t> ProtoReserved;     ///< carried through load and save, read by nothing
  ProtocolTable<std::int32_t> ProtoStatusCount;  ///< number of the first status row without a name, -1 = none
  ProtocolTable<StatusTable> ProtoStatusTable;
  ProtocolTable<std::int32_t> ProtoCmdStartChar;   ///< character code, 0 = none
  ProtocolTable<std::int32_t> ProtoCmdTerminator;  ///< character code, 0 = none, 1310 = CR LF
  Table<ProtocolTable<Boolean>, kCommandRows> ProtoCmdEnabled;
  Table<Table<ProtocolTable<std::string>, kCommandRows>, 3> ProtoCmdText;  ///< rows device text, name, code
  ProtocolTable<std::int16_t> ProtoDecimalCode;  ///< last decimal code found in status data; never reset
  ProtocolTable<std::string> ProtoPolarity;      ///< "+", "-" or "" of the stream now being handled
  Table<std::string, 33> ProtoFormatMask;        ///< by protocol, but protocols 33 and up raise error 9: they cannot
                                                 ///< use status decimals

  // Channel run-time state.
  ChannelTable<Boolean> ChanConnected;
  Table<Table<Boolean, 34>, 9> ChanIndicator;
  Table<Table<Boolean, 34>, 15> ChanDirty;  ///< set by whoever changes the item, cleared by the painter
  ChannelTable<std::string> ChanStatusText;
  ChannelTable<std::string> ChanGross, ChanTare, ChanNet;  ///< formatted, right-aligned to the stream's field
  ChannelTable<std::string> ChanPrevGross, ChanPrevTare, ChanPrevNet;
  ChannelTable<std::string> ChanStreamId, ChanPrevStreamId;
  ChannelTable<std::string> ChanRxChunk, ChanRxBuffer, ChanStream;
  ChannelTable<std::int16_t> ChanStatusBits, ChanPrevStatusBits;
  ChannelTable<Boolean> ChanMotion;
  ChannelTable<std::string> ChanMode;                ///< "GROSS", "NET" or "" for this stream
  ChannelTable<std::string> ChanError;               ///< upper-case error status name of this stream
  ChannelTable<std::string> ChanUnits;               ///< upper-case units name of this stream
  Table<ChannelTable<std::string>, 11> ChanStatusN;  ///< rows 1 to 9
  ChannelTable<std::string> ChanMatchName, ChanMatchField;
  ChannelTable<std::string> ChanPrimaryUnitsName;
  ChannelTable<Boolean> ChanDecimalsKnown;
  ChannelTable<Boolean> ChanStatusDecimals;
  ChannelTable<std::int16_t> ChanDecimals;
  ChannelTable<std::string> ChanFormatMask;
  ChannelTable<std::int32_t> ChanLastRxTick;
  ChannelTable<std::int32_t> ChanStreamEndTick;  ///< `ScanTick` when a terminator last arrived, or at connection: what
                                                 ///< arrives without one is no sign of life
  ChannelTable<std::int32_t> ChanByteTick;       ///< `ScanTick` when anything last arrived
  ChannelTable<Boolean> ChanStreamUnfinished;    ///< the stream under way has not been taken whole
  Table<ChannelTable<std::int32_t>, 3> ChanLampTick;  ///< rows RX, TX, spare
  ChannelTable<std::int32_t> ChanOpcTick;
  ChannelTable<Boolean> ChanOpcPending, ChanOpcBusy, ChanDdePending;
  ChannelTable<Boolean> ChanOpcAnswerStaged;  ///< the answer to a command has not been handed to the server yet
  ChannelTable<Table<DdeItem, 11>> ChanDdeItems;
  ChannelTable<Boolean> ChanUpdatePending;
  ChannelTable<std::int32_t> ChanCmdState, ChanCmdStatus;
  ChannelTable<double> ChanCmdParm;
  ChannelTable<std::string> ChanTxQueue;
  ChannelTable<std::int32_t> ChanTxTick;
  ChannelTable<Boolean> ChanDetailOpen, ChanSqlDetailOpen;

  // Terminals on the network: paths of their shared data. Records are characters, filled with blanks to their length.
  ChannelTable<std::string> ChanPathCommand;                                             ///< the mailbox, 40
  ChannelTable<std::string> ChanPathDbName;                                              ///< 40
  ChannelTable<std::string> ChanPathLit03;                                               ///< built, never used
  ChannelTable<Table<std::string, kPacketPaths>> ChanPathPacket;                         ///< 1 to 5, 400 each
  ChannelTable<std::string> ChanPathBas10, ChanPathVfd1;                                 ///< built, never used
  ChannelTable<std::string> ChanPathWt101;                                               ///< gross weight, 12
  ChannelTable<std::string> ChanPathWs102, ChanPathWt102, ChanPathWt116, ChanPathWt103;  ///< built, never read
  std::string WeightFieldBuffer, ShortFieldBuffer, PacketFieldBuffer, TestFieldBuffer;

  // Database clients, protocol 0.
  ChannelTable<std::int32_t> ChanPacketIndex;  ///< first element of the packet in flight, a multiple of 15
  ChannelTable<float> ChanPacketTime;          ///< seconds since midnight when a packet behind the first one was sent
  ChannelTable<std::string> ChanDbName, ChanDbQuery;
  ChannelTable<std::string> ChanDbInText;                           ///< what stands from "IN " to "WHERE"
  ChannelTable<Table<std::int32_t, kDbKeywords>> ChanDbKeywordPos;  ///< from 1; 0 = not there
  ChannelTable<std::string> ChanDbReply;
  ChannelTable<Table<std::string, kDbRows>> ChanDbRows;
  ChannelTable<std::int32_t> ChanDbRowCount;
  ChannelTable<Boolean> ChanDbFound;
  ChannelTable<std::int32_t> ChanSqlLines;
  ChannelTable<double> ChanLotDays;
  ChannelTable<std::string> ChanLotValue;
  std::int16_t DbFieldCount = 0;      ///< elements that the records of the present result have filled
  std::int32_t DbSeparator = 0;       ///< character code
  Boolean DatabaseRightsSet = False;  ///< there is a file of rights: what it does not name is refused
  std::vector<DatabaseRight> DatabaseRights;

  // Serial state kept for the port trial.
  ChannelTable<std::int32_t> ChanAppliedPort;
  ChannelTable<std::string> ChanAppliedSettings;
  ChannelTable<Boolean> ChanAppliedHandshake;
  ChannelTable<std::string> ChanSavedSettings;
  ChannelTable<std::int32_t> ChanSavedPort, ChanSavedHandshake;

  // Scalars.
  std::string OsName;
  int MaxChannel = 7;  ///< highest usable channel number, 7 or 31
  std::int16_t ScreenWidth = 0, ScreenHeight = 0;
  std::int32_t ScreenMode = 0;
  Boolean SpeechEnabled = False, DebugMode = False, NoMinimize = False, GdiEnabled = True;
  Boolean UnprotectFormats = False;
  std::int32_t LastFixedProtocol = 9;
  std::int32_t ScanTick = 0;
  Boolean ScanTickWrapped = False;
  std::int32_t ScanRate = 0;
  std::int64_t ScanLastSecond = 0;
  Boolean ScanBusy = False;
  int NextChannelToServe = 0;      ///< where the next tick begins: behind the channel whose fault ended the last one
  std::int32_t HeldScanTick = -1;  ///< `ScanTick` as a timer beside the scan has last seen it change,
  std::int64_t HeldSince = 0;      ///< and when, in milliseconds of `System::Milliseconds`
  std::int32_t TxTick = 0;
  Boolean TxTickWrapped = False;
  std::int32_t TxRate = 0;
  std::int64_t TxLastSecond = 0;
  std::int32_t GDIRate = 0;
  std::int64_t GDILastSecond = 0;
  std::int32_t Timer1Interval = 25, Timer1Sleep = 2;
  std::int32_t TxTimerInterval = 15, TxTimerSleep = 0;
  std::int32_t GDITimerInterval = 25, GDITimerSleep = 1;
  Boolean CmdStatInterlock = True, StartMinimized = True;
  Boolean FirstScanPending = False, ChannelsInitialised = False, InterfacePending = False;
  Boolean Stopped = False;  ///< from a stop or the end until the next start: what is under way goes no further
  std::int16_t ReinitChannel = kNoChannel;
  std::int16_t EditedChannel = kNoChannel;  ///< the one whose setup is open: nothing opens it meanwhile
  Boolean TerminalLinkUp = False, TerminalLinkRetry = False;
  std::int16_t VantStatus = 0;       ///< of the last call of the terminal library
  std::int32_t VantErrorChoice = 0;  ///< 3 Abort, 4 Retry, 5 Ignore
  Boolean Minimized = False, RefreshOpen = False;
  Boolean ScreenPainted = False;
  std::int32_t SelectedChannel = 0, DetailChannel = 0;
  std::int64_t StreamsDecoded = 0;  ///< of all channels, since the program started
  std::int32_t DebugCommands = 0, DebugOpcUpdates = 0, DebugOpcSkipped = 0;  ///< counted in debug mode only
  std::string ProgramFolder;    ///< where the .Cfg and log files lie, without a separator at its end
  std::string SystemFileFault;  ///< the one told last, empty since the file has been found good

  /// How far the first initialisation has come: what is read or opened next. A fault ends its tick, and the
  /// next tick goes on behind the faulty format or channel.
  Boolean InitialisationAnnounced = False;
  int NextFormatToRead = 0, NextChannelToOpen = 0;
  /// What is wrong with the file of a protocol; its channels are not opened, since their weights would be wrong.
  ProtocolTable<std::optional<RunTimeError>> ProtoFault;
  ProtocolTable<Boolean> ProtoLoaded;  ///< its file has been read
  /// The channel is to be opened again in the next tick with the settings in the tables, as after its setup.
  ChannelTable<Boolean> ChanReopenPending;
  ChannelTable<Boolean> ChanFormatRefused;  ///< the channel was to be opened, and its protocol's fault kept it closed
  /// The channel was enabled in its file, which was found empty or gone when it was read again; until it has content.
  ChannelTable<Boolean> ChanSettingsLost;
  /// What the channel's file said of `ChanEnabled` when it was last read or written; a fault disables in the tables
  /// alone.
  ChannelTable<Boolean> ChanEnabledInFile;
  /// What of the channel's file is not used as it stands, as told last.
  ChannelTable<std::vector<std::string>> ChanFileRemarks;
  /// The weight log of the channel could not be written last time; a fault is reported once until it can again.
  ChannelTable<Boolean> ChanAsciiLogFailed;
  /// Faults that have been told and still last.
  ChannelTable<ToldFaults> ChanToldFaults;
  ToldFaults ScanToldFaults;  ///< those that belong to no channel
  /// The channel's device was not there when its port was opened; it is looked for, last in that second of the
  /// wall clock, and the channel is opened when it appears.
  ChannelTable<Boolean> ChanDeviceMissing;
  ChannelTable<std::int64_t> ChanDeviceTrySecond;
  /// Scratch of the tick: the weight field that is being formatted.
  std::string WeightField;

  // Fixed tables, filled once at start-up.
  Table<std::string, 7> DecimalMaskTable;
  Table<std::string, 13> UnitsTable;
  Table<std::string, 54> PortSettingsTable;
};
