#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "app/headless_forms.h"
#include "app/manager.h"
#include "platform/memory/hand_turned.h"
#include "platform/memory/memory_databases.h"
#include "platform/memory/memory_files.h"
#include "platform/memory/memory_notice.h"
#include "platform/memory/memory_opc.h"
#include "platform/memory/memory_ports.h"
#include "platform/memory/memory_terminals.h"

/// Hands live values to the test: to `onDetail` if it is set, rates to `rate` by label.
class RecordingDialogs : public ScanDialogs {
 public:
  std::function<void(int element, std::string_view text)> onDetail;
  std::map<int, int> rate;
  void ShowDetail(int element, std::string_view text) override {
    if (onDetail) onDetail(element, text);
  }
  void ShowRate(int label, int ticksPerSecond) override { rate[label] = ticksPerSecond; }
};

/// Parts that a test brings in place of the plant's own.
struct OwnParts {
  Configuration* configuration = nullptr;
  TerminalRoom* terminal = nullptr;
  StartupForm* startupForm = nullptr;
  MainForm* mainForm = nullptr;
};

/// The real system on a fake outside. The program's folder is "/plant"; nothing is loaded or connected until the
/// test says so.
class TestPlant {
 public:
  TestPlant();

  HandTurnedSystem system{"2026-01-02 03:04:05"};
  HandTurnedEvents events;
  MemoryPorts ports;
  MemoryFiles files;
  MemoryNotice notice;
  MemoryOpc opc;
  MemoryTerminals terminals;
  MemoryDatabases databases;
  HeadlessStartupForm startupForm;
  HeadlessMainForm mainForm;
  RecordingDialogs dialogs;
  Manager manager;
  Tables& tables;
  Engine& engine;

  /// The plant's engine with `own` parts in it.
  Engine EngineWith(const OwnParts& own);
  /// A connected serial channel on a protocol of the test's own making, past all initialisation.
  void Connect(int ch, int proto);
  /// Adds a status row in front of the empty one and counts it.
  void AddStatusRow(int proto, const std::vector<std::string>& cells);
  /// One tick of `Timer1` with these bytes waiting at channel `ch`.
  void Tick(int ch, std::string_view bytes);
  /// One tick of `Timer1` in which nothing arrives.
  void Tick();
  /// Content of a log file (`LogType`).
  std::string LogText(int type) const;
};
