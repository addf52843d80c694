#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/headless_forms.h"
#include "app/manager.h"
#include "platform/absent/databases.h"
#include "platform/absent/terminal_library.h"
#include "platform/memory/hand_turned.h"
#include "platform/memory/memory_notice.h"
#include "platform/memory/memory_opc.h"
#include "platform/memory/memory_ports.h"
#include "platform/run_time_error.h"
#include "tools/replay/capture.h"
#include "tools/replay/overlay_files.h"

/// What is replayed, and on which channel.
struct ReplaySetup {
  std::string home{};     ///< program's folder
  int number = 1;         ///< display number of the channel, 1 to 32
  std::string format{};   ///< file in the place of the channel's format file; empty for its own
  std::string channel{};  ///< file in the place of the channel file; empty for its own
  int startTick = 0;      ///< tick count before the first tick of the capture, 0 to 10000000
};

/// What one tick did, beside what the tables hold after it.
struct TickEvents {
  enum class Outcome { Silent, Partial, Stream };
  struct LogLine {
    int kind;  ///< `LogType`
    std::string text;
  };

  std::optional<RunTimeError> error;  ///< what ended the tick
  Outcome outcome = Outcome::Silent;
  std::string chunk;  ///< the bytes taken from the port
  std::vector<std::string_view> flush;
  std::map<int, OpcValue> opcWrites;
  std::vector<std::string> portOut;
  std::optional<int> answer;           ///< CMDSTAT given to the automation client
  std::vector<std::string> weightLog;  ///< from "Device #: " on
  std::vector<LogLine> log;
};

/// The real system with one channel, a port fed by hand and a tick turned by hand.
class Replay {
 public:
  /// Starts the system on the program's folder and opens the channel: it is enabled, and connected by its serial
  /// port, whatever its file says. The initialisation runs at the start tick. `disk` is read only.
  /// Raises 9 for a channel number outside 1 to 32 and 5 for a format that cannot stand in for the channel's own.
  Replay(Files& disk, const ReplaySetup& setup);
  Replay(const Replay&) = delete;
  Replay& operator=(const Replay&) = delete;

  /// What the operator should know of the files before believing the result.
  const std::vector<std::string>& Warnings() const { return warnings_; }

  void Act(const DeviceWrites& writes);
  void Act(const OpcArrivals& arrivals);
  /// One tick with these bytes at the port. The first tick also tells the fault that kept the channel closed.
  TickEvents Tick(const std::string& bytes);

  int Channel() const { return ch_; }
  const Tables& Store() const { return tables_; }
  const DdeTopics& Topics() const { return topics_; }
  const Device& ChannelDevice() const { return *device_; }

 private:
  /// Shows and activates itself as a window does; a replay is never minimised.
  class MainWindow : public HeadlessMainForm {
   public:
    Engine* engine = nullptr;
    void Show() override;
  };
  /// Writes down in which order the outlets are flushed.
  class FlushOrder : public DdeItemWatcher, public DeviceSink {
   public:
    std::vector<std::string_view> outlets;
    void ItemsChanged(int, unsigned) override {}
    void LinksUpdated(int) override { outlets.push_back("DDE"); }
    void CUpdate() override { outlets.push_back("Device"); }
  };

  void PutFilesInPlace(const ReplaySetup& setup);
  void StartUp();
  void FirstInitialisation(int startTick);
  void OpenInSpiteOfItsFile(int startTick);
  void InitialisationTick(int startTick);
  RunTimeError WarnOf(const RunTimeError& fault);
  void WarnOfFormats();
  void SortLines(TickEvents& events);

  int ch_;
  OverlayFiles files_;
  HandTurnedSystem system_;
  HandTurnedEvents events_;
  MemoryPorts ports_;
  MemoryOpc opc_;
  AbsentTerminalLibrary terminals_;
  AbsentDatabases databases_;
  MemoryNotice notice_;
  HeadlessStartupForm startupForm_;
  MainWindow mainForm_;
  HeadlessDialogs dialogs_;
  Manager manager_;
  Tables& tables_;
  DdeTopics& topics_;
  FlushOrder flush_;
  std::shared_ptr<Device> device_;
  MemoryOpcControl& opcControl_;
  std::optional<RunTimeError> initialisationFault_;
  std::vector<std::string> warnings_;
};
