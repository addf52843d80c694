#include "tools/replay/options.h"

#include <charconv>
#include <functional>

namespace {

constexpr int kLastStartTick = 10'000'000;

[[noreturn]] void Refuse(const std::string& text) { throw RunTimeError(ErrorNumber::InvalidCall, text); }

int ReadNumber(const std::string& name, const std::string& text, int low, int high) {
  int number = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
  if (read.ec != std::errc{} || read.ptr != text.data() + text.size() || number < low || number > high) {
    Refuse(name + " takes a number from " + std::to_string(low) + " to " + std::to_string(high) + ", not '" + text +
           "'");
  }
  return number;
}

struct ValueOption {
  std::string name;
  std::function<void(ReplayOptions&, const std::string& value)> take;
};

const std::vector<ValueOption>& ValueOptions() {
  static const std::vector<ValueOption> kOptions = {
      {"--home", [](ReplayOptions& o, const std::string& value) { o.setup.home = value; }},
      {"--format", [](ReplayOptions& o, const std::string& value) { o.setup.format = value; }},
      {"--channel", [](ReplayOptions& o, const std::string& value) { o.setup.channel = value; }},
      {"--number", [](ReplayOptions& o,
                      const std::string& value) { o.setup.number = ReadNumber("--number", value, 1, kChannels); }},
      {"--start-tick",
       [](ReplayOptions& o, const std::string& value) {
         o.setup.startTick = ReadNumber("--start-tick", value, 0, kLastStartTick);
       }},
  };
  return kOptions;
}

const ValueOption* FindValueOption(const std::string& name) {
  for (const ValueOption& option : ValueOptions()) {
    if (option.name == name) return &option;
  }
  return nullptr;
}

}  // namespace

ReplayOptions ReadReplayOptions(const std::vector<std::string>& words) {
  ReplayOptions options;
  bool captureNamed = false;
  for (std::size_t index = 0; index < words.size(); ++index) {
    const std::string& word = words[index];
    const std::size_t equals = word.starts_with("--") ? word.find('=') : std::string::npos;
    const std::string name = word.substr(0, equals);
    if (word == "--help" || word == "-h") {
      options.help = true;
    } else if (word == "--json") {
      options.json = true;
    } else if (const ValueOption* option = FindValueOption(name)) {
      if (equals == std::string::npos && index + 1 == words.size()) Refuse(name + " needs a value behind it");
      const std::string value = equals == std::string::npos ? words[++index] : word.substr(equals + 1);
      if (value.empty()) Refuse(name + " needs a value behind it");
      option->take(options, value);
    } else if (word.size() > 1 && word.starts_with('-')) {
      Refuse("there is no option " + name);
    } else if (captureNamed) {
      Refuse("one capture at a time, not also '" + word + "'");
    } else {
      captureNamed = true;
      options.capture = word == "-" ? "" : word;
    }
  }
  return options;
}

const char* const kReplayHelp = R"(tarvex-replay - shows what the manager makes of the bytes a device has sent

  tarvex-replay [OPTION]... [CAPTURE]

Runs one channel with its real files over a capture, one line a tick, and prints what
was decoded. Nothing is written to the program's folder, no port is opened, and a
manager that runs is not disturbed. Without CAPTURE, or with -, standard input is read.

  --home DIR        program's folder with the .Cfg files (else $TARVEX_HOME, else
                    $XDG_DATA_HOME/tarvex, else ~/.local/share/tarvex)
  --number N        channel as people count them, 1 to 32 (1)
  --format F.Cfg    this file in the place of the channel's format file
  --channel C.Cfg   this file in the place of the channel file, Tarvex-SCALE<N>.Cfg
  --start-tick T    tick count before the first line, 0 to 10000000 (0)
  --json            one JSON object a line and tick instead of the table
  --help            this text

The capture is text:

  02 2C 30 20 30 30 31 32 35 30 0D    the bytes that arrive in one tick, as hex digits
                                      an empty line: nothing arrives in this tick
  !device CCmd=3 CCmdParm=0 CCmdStat=0
                                      before the next tick an automation client writes
                                      these fields and calls CDoUpdate. Fields:
                                      CDeviceDesc CDeviceID CCmd CCmdParm CCmdStat
                                      CGross CTare CNet CScaleStat
  !opc 4=3 5=12.5 6=0                 before the next tick these values arrive from the
                                      OPC server, items 0 to 7
  # text                              a comment, also behind bytes; it is no tick

A tick stands for Timer1Interval of the system file, 25 ms unless changed. The time-out
and the refresh of a channel count ticks.

The table shows the stream with its control characters by name, <STX>, and bytes above
126 as hex, <B2>. The first CR of a stream is a blank, as it is decoded. "..." stands
before bytes that completed no stream. Weights are the texts of the weigh screen. Status
is the word published as SCALESTAT with its bits: range 1, motion 2, net 4, LB 8,
offline 16. Below a tick stand log lines, what was sent to the device, the answers to commands, and
faults.

A JSON object holds the channel's tables after the tick under their names, and:

  error      null, or number and description of the fault that ended the tick. A fault
             that kept the channel from being opened stands in the first object
  outcome    "silent", "partial" (bytes, but no terminator) or "stream"
  streamHex  the stream handled, null if none; streamLen: its length
  bufferHex  what is kept for the next tick
  opcWrites  last value written to each OPC item in this tick, by item number
  flush      which of "OPC", "DDE" and "Device" were flushed, in order
  dde        texts of the items Gross Tare Net ScaleStat Cmd CmdParm CmdStat
  device     the nine fields of the Device object
  portOut    texts written to the device, as hex
  weightLog  lines of the weight log from "Device #: " on
  log        lines of the other logs with their kind: 1 error, 6 OPC, 8 automation

A channel that is disabled, or connected otherwise than by a serial port, is replayed as
if it were enabled and had one. Warnings and faults in files go to standard error.
Exit status: 0 the capture was replayed to its end, 2 it was not.
)";
