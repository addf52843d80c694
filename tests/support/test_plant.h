#pragma once

#include <array>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "app/headless_forms.h"
#include "app/manager.h"
#include "tests/support/fake_opc.h"

/// Hand-cranked clock and a machine as the test wants it.
class FakeSystem : public System {
 public:
  OsVersion version{2, 5, 0};
  int width = 1024;
  int height = 768;
  bool previousInstance = false;
  std::int64_t second = 1'000'000;
  int sleeps = 0;

  OsVersion GetVersionEx() const override { return version; }
  int GetSystemMetrics(int index) const override { return index == 0 ? width : height; }
  bool PreviousInstance() override { return previousInstance; }
  std::int64_t WallSeconds() const override { return second; }
  std::string DateTimeText() const override { return "2026-01-02 03:04:05"; }
  void Sleep(int) override { ++sleeps; }
};

class FakeTimer : public PeriodicTimer {
 public:
  int interval = 15;
  bool enabled = false;
  void SetInterval(int milliseconds) override { interval = milliseconds; }
  int Interval() const override { return interval; }
  void SetEnabled(bool on) override { enabled = on; }
};

class FakeEventLoop : public EventLoop {
 public:
  FakeTimer timer1, txTimer, gdiTimer;
  std::function<void()> onDoEvents;
  void DoEvents() override {
    if (onDoEvents) onDoEvents();
  }
  PeriodicTimer& Timer1() override { return timer1; }
  PeriodicTimer& TxTimer() override { return txTimer; }
  PeriodicTimer& GDITimer() override { return gdiTimer; }
};

/// A port whose far end is the test: bytes put into `waiting` arrive, `sent` holds each write.
class FakePort : public SerialPort {
 public:
  std::string waiting;
  std::vector<std::string> sent;
  int openError = 0;          ///< number raised by the next opening, 0 for none
  bool refuseToOpen = false;  ///< opening succeeds but leaves the port closed
  bool open = false;
  int opened = 0;
  int commPort = 0;
  std::string settings;
  int handshaking = 0;

  bool PortOpen() const override { return open; }
  void Open() override;
  void Close() override { open = false; }
  int CommPort() const override { return commPort; }
  void SetCommPort(int number) override { commPort = number; }
  const std::string& Settings() const override { return settings; }
  void SetSettings(std::string_view text) override { settings = text; }
  int Handshaking() const override { return handshaking; }
  void SetHandshaking(int mode) override { handshaking = mode; }
  std::size_t InBufferCount() override;
  void Input(std::string& chunk) override;
  void Output(std::string_view data) override;

 private:
  void RequireOpen() const;
};

class FakePorts : public SerialPorts {
 public:
  std::array<FakePort, 32> port;
  int polls = 0;
  SerialPort& Port(int ch) override;
  void Poll() override { ++polls; }
};

/// Files in memory; a path in `broken` raises its error number at every use.
class MemoryFiles : public Files {
 public:
  std::map<std::string, std::string> content;
  std::map<std::string, int> broken;

  std::string OpenAndRead(const std::string& path) override;
  std::string Read(const std::string& path) override;
  void Replace(const std::string& path, std::string_view text) override;
  void Append(const std::string& path, std::string_view line) override;

 private:
  void Check(const std::string& path) const;
};

class RecordingNotice : public OperatorNotice {
 public:
  struct Box {
    std::string caption;
    std::string text;
  };
  std::vector<Box> boxes;
  std::vector<std::string> spoken;
  void MessageBox(std::string_view caption, std::string_view text) override {
    boxes.push_back({std::string(caption), std::string(text)});
  }
  void Speak(std::string_view sentence) override { spoken.emplace_back(sentence); }
};

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

  FakeSystem system;
  FakeEventLoop events;
  FakePorts ports;
  MemoryFiles files;
  RecordingNotice notice;
  FakeOpc opc;
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
