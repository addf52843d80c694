#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "config/setup/model.h"
#include "core/stream_explained.h"
#include "core/tables.h"
#include "platform/serial_ports.h"

/// What the live line of the setup screen shows.
struct LiveLine {
  std::string stream{};     ///< the last stream received, as bytes; empty for none so far
  int first = 0, last = 0;  ///< characters of the marked field, counted from 1; `first` 0 marks none
  std::string value{};      ///< what the marked field says, or the weights
  std::string notice{};     ///< shown while there is no stream
};

/// Listens to the device of the channel that is edited, with the fields as they are typed, and decodes what it sends.
/// It has tables of its own: nothing of it reaches the system.
class LiveListener {
 public:
  LiveListener(const Tables& tables, SerialPorts& ports, const SetupModel& model);
  ~LiveListener();

  /// From here on the port of channel `ch`, which must be closed, is the listener's. `stream` is what the channel has
  /// received last.
  void Start(int ch, const std::string& stream);
  /// Gives the port back, closed and with the settings that it had.
  void Stop();

  /// Takes what has arrived since the last call and decodes it. `focus` says which field is marked. To be called some
  /// times a second, after a change too. `now` in milliseconds: a port that cannot be opened is tried once a second.
  LiveLine Look(std::optional<FieldId> focus, std::int64_t now);

 private:
  struct Settings {
    int port = -1, setup = -1, handshake = 0;
    friend bool operator==(const Settings&, const Settings&) = default;
  };

  Settings Wanted() const;
  void Listen(std::int64_t now);
  void OpenPort();
  void Receive(SerialPort& port);
  bool TakeRecord();
  void Mark(LiveLine& line, std::optional<FieldId> focus, const ExplainedStream& explained);
  void MarkRow(LiveLine& line, const ExplainedRow& row, const std::string& name) const;
  ExplainedRow TypedRow();

  const Tables& live_;
  SerialPorts& ports_;
  const SetupModel& model_;
  std::unique_ptr<Tables> scratch_;
  int channel_ = kNoChannel;
  std::optional<Settings> opened_;  ///< nothing before the first look
  Settings before_{};
  std::string settingsBefore_;
  std::int64_t triedAt_ = 0;
  int gridRevision_ = -1;
  int protocol_ = -1;
  std::array<std::int32_t, 4> framing_{-1};  ///< protocol, start character, terminator, length
  std::string notice_;
};
