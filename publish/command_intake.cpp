#include "publish/command_intake.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

#include "core/channel_state.h"
#include "core/error_trap.h"
#include "core/lamps.h"
#include "core/log.h"
#include "core/tables.h"
#include "platform/opc_control.h"
#include "platform/serial_ports.h"
#include "protocol/number.h"
#include "publish/device.h"
#include "publish/device_text.h"

namespace {

constexpr double kSent = 100;
constexpr double kRefused = 1000;
constexpr std::int16_t kOpcCmd = 4;
constexpr std::int16_t kOpcCmdParm = 5;
constexpr std::int16_t kOpcCmdStat = 6;
constexpr int kDeviceRow = 0;
constexpr int kNameRow = 1;
constexpr int kCodeRow = 2;

struct Command {
  double code;
  double parameter;
  double status;
};

/// Where a command comes from and where its answer goes.
class CommandSource {
 public:
  virtual ~CommandSource() = default;
  virtual Command Read() = 0;
  /// Clears the code and sets CMDSTAT; the answer reaches the client at the end of the visit.
  virtual void Answer(double status) = 0;
  virtual void MarkPending() = 0;
  virtual void WriteLogLine(const Command& command) = 0;
  /// A line of the same log about what has become of a command.
  virtual void WriteOutcome(std::string_view text) = 0;
};

std::string DevicePrefix(int ch) { return "Device: " + std::to_string(ch) + "; "; }

std::string General(double value) { return std::string(GeneralText(Decimal::FromDouble(value)).View()); }

class AutomationSource : public CommandSource {
 public:
  AutomationSource(Tables& tables, Log& log, int ch) : tables_(tables), log_(log), ch_(ch) {}

  Command Read() override {
    return {static_cast<double>(tables_.ChanCmdState[ch_]), tables_.ChanCmdParm[ch_],
            static_cast<double>(tables_.ChanCmdStatus[ch_])};
  }
  void Answer(double status) override {
    tables_.ChanCmdState[ch_] = 0;
    tables_.ChanCmdStatus[ch_] = static_cast<std::int32_t>(status);
    MarkPending();
  }
  void MarkPending() override { tables_.ChanUpdatePending[ch_] = True; }
  void WriteLogLine(const Command& command) override {
    log_.WriteLog(LogType::Automation, DevicePrefix(ch_) + "Rcvd ActiveX Command: " + General(command.code) +
                                           "  Parm: " + General(command.parameter) +
                                           "   Stat: " + General(command.status));
  }
  void WriteOutcome(std::string_view text) override {
    log_.WriteLog(LogType::Automation, DevicePrefix(ch_) + std::string(text));
  }

 private:
  Tables& tables_;
  Log& log_;
  int ch_;
};

double OpcNumber(const OpcValue& value) {
  if (const double* number = std::get_if<double>(&value)) return *number;
  if (const std::int16_t* number = std::get_if<std::int16_t>(&value)) return *number;
  if (const std::string* text = std::get_if<std::string>(&value)) return NumericValue(*text);
  return 0;
}

std::string OpcText(const OpcValue& value) {
  if (const std::string* text = std::get_if<std::string>(&value)) return *text;
  return std::holds_alternative<std::monostate>(value) ? std::string{} : General(OpcNumber(value));
}

OpcValue OpcStatus(double status) {
  constexpr double kLargest = std::numeric_limits<std::int16_t>::max();
  if (std::fabs(status) <= kLargest && status == std::trunc(status)) return static_cast<std::int16_t>(status);
  return status;
}

class OpcSource : public CommandSource {
 public:
  OpcSource(Tables& tables, Log& log, OpcControl& opc, int ch) : tables_(tables), log_(log), opc_(opc), ch_(ch) {}

  Command Read() override {
    return {OpcNumber(opc_.Value(kOpcCmd)), OpcNumber(opc_.Value(kOpcCmdParm)), OpcNumber(opc_.Value(kOpcCmdStat))};
  }
  void Answer(double status) override {
    opc_.SetValue(kOpcCmd, std::int16_t{0});
    opc_.SetValue(kOpcCmdStat, OpcStatus(status));
    tables_.ChanOpcAnswerStaged[ch_] = True;
    MarkPending();
  }
  /// Takes the code back without an answer.
  void Clear() {
    opc_.SetValue(kOpcCmd, std::int16_t{0});
    tables_.ChanOpcAnswerStaged[ch_] = True;
    MarkPending();
  }
  void MarkPending() override { tables_.ChanOpcPending[ch_] = True; }
  /// Read anew from the items, as the server wrote them.
  void WriteLogLine(const Command&) override {
    log_.WriteLog(LogType::Opc, DevicePrefix(ch_) + "Rcvd OPC Command: " + OpcText(opc_.Value(kOpcCmd)) + "  Parm: " +
                                    OpcText(opc_.Value(kOpcCmdParm)) + "   Stat: " + OpcText(opc_.Value(kOpcCmdStat)));
  }
  void WriteOutcome(std::string_view text) override {
    log_.WriteLog(LogType::Opc, DevicePrefix(ch_) + std::string(text));
  }

 private:
  Tables& tables_;
  Log& log_;
  OpcControl& opc_;
  int ch_;
};

/// First row that holds the code, enabled or not; -1 if there is none.
int FindRow(const Tables& tables, int proto, double code) {
  for (int row = 0; row < kCommandRows; ++row) {
    if (NumericValue(tables.ProtoCmdText[kCodeRow][row][proto]) == code) return row;
  }
  return -1;
}

bool LampIsDue(const Tables& tables, int ch) { return TicksSince(tables, tables.ChanLampTick[Item::Tx][ch]) >= 1; }

/// The lamp of a command, which is paced alike whether the window is minimised or not.
void LightTransmitLamp(Tables& tables, int ch) {
  if (tables.ChanIndicator[Item::Tx][ch] == True || !LampIsDue(tables, ch)) return;
  SetLamp(tables, ch, Item::Tx, true);
  tables.ChanLampTick[Item::Tx][ch] = tables.ScanTick;
}

/// False if nothing of the text left the machine; nothing is shown as sent then.
bool SendToDevice(Tables& tables, SerialPorts& ports, int ch, int row, double parameter) {
  const int proto = tables.ChanProtocol[ch];
  const std::string& name = tables.ProtoCmdText[kNameRow][row][proto];
  const DeviceText device = BuildDeviceText(tables.ProtoCmdText[kDeviceRow][row][proto], parameter,
                                            tables.ProtoCmdStartChar[proto], tables.ProtoCmdTerminator[proto]);
  bool sent = false;
  ResumeNextOnClosedPort(tables, ch, [&] { sent = ports.Port(ch).Output(device.text); });
  if (!sent) return false;
  switch (device.form) {
    case DeviceTextForm::Plain:
      SetCaption(tables, ch, name);
      LightTransmitLamp(tables, ch);
      break;
    case DeviceTextForm::Narrow:
      SetCaption(tables, ch, device.value + "  " + name);
      LightTransmitLamp(tables, ch);
      break;
    case DeviceTextForm::Wide:
      if (LampIsDue(tables, ch)) tables.ChanLampTick[Item::Tx][ch] = tables.ScanTick;
      break;
  }
  return true;
}

void TakeCommand(Tables& tables, SerialPorts& ports, CommandSource& source, int ch) {
  Command command = source.Read();
  if (tables.CmdStatInterlock == False) command.status = 0;
  if (command.status != 0 || command.code == 0 || !std::isfinite(command.code)) return;

  const int proto = tables.ChanProtocol[ch];
  const int row = std::isfinite(command.parameter) ? FindRow(tables, proto, command.code) : -1;
  ForceRepublication(tables, ch);
  if (row < 0) {
    source.Answer(command.code + kRefused);
    return;
  }
  source.MarkPending();
  if (tables.DebugMode == True) ++tables.DebugCommands;
  if (tables.ProtoCmdEnabled[row][proto] == False) return;  // the code stays in place until the row is enabled
  source.WriteLogLine(command);
  source.Answer(command.code + kSent);
  if (SendToDevice(tables, ports, ch, row, command.parameter)) return;
  source.Answer(command.code + kRefused);
  source.WriteOutcome("Command Not Sent: " + General(command.code) +
                      ", the line is gone, or too much waits to be sent on it");
}

}  // namespace

void TakeCommandFromAutomation(Tables& tables, SerialPorts& ports, Log& log, int ch) {
  AutomationSource source(tables, log, ch);
  TakeCommand(tables, ports, source, ch);
}

void TakeCommandFromOpc(Tables& tables, SerialPorts& ports, Log& log, OpcControl& opc, int ch) {
  if (TicksSince(tables, tables.ChanOpcTick[ch]) >= tables.ChanRefresh[ch]) tables.ChanOpcPending[ch] = True;
  // Until an update has carried the answer, the items still hold the command that it answers.
  if (tables.ChanOpcAnswerStaged[ch] == True) return;
  OpcSource source(tables, log, opc, ch);
  if (const double code = source.Read().code; code > kLargestCommandCode) {
    source.Clear();
    source.WriteOutcome("Refused OPC Command: " + General(code) + ", the largest code is " +
                        std::to_string(kLargestCommandCode));
    return;
  }
  TakeCommand(tables, ports, source, ch);
}
