#include <algorithm>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <thread>

#include "core/fixed_tables.h"
#include "core/setting_limits.h"
#include "platform/posix/line_settings.h"
#include "platform/posix/monotonic_clock.h"
#include "platform/posix/posix_serial_ports.h"
#include "tools/setup/line_frames.h"
#include "tools/setup/stream_print.h"
#include "tools/setup/verbs.h"

namespace {

constexpr std::int64_t kLookMilliseconds = 10;
constexpr std::int64_t kTryMilliseconds = 700;
constexpr std::int64_t kTryLongerMilliseconds = 1800;  ///< for a device that sends once a second
constexpr std::size_t kEnoughFrames = 3;
constexpr const char* kUsualSettings = "9600,N,8,1";

volatile std::sig_atomic_t interrupted = 0;

struct ListenOptions {
  std::string port{}, settings = kUsualSettings, record{};
  bool trySettings = false;
  std::int64_t milliseconds = 0;  ///< 0: until Ctrl-C
};

std::string TakeValue(const Words& words, std::size_t& at) {
  if (at + 1 >= words.size()) throw SetupToolFault(words[at] + " takes a value");
  return words[++at];
}

ListenOptions ReadOptions(const Words& words) {
  ListenOptions options;
  int named = 0;
  for (std::size_t at = 0; at < words.size(); ++at) {
    if (words[at] == "--record") {
      options.record = TakeValue(words, at);
    } else if (words[at] == "--try-settings") {
      options.trySettings = true;
    } else if (words[at] == "--seconds") {
      const std::string value = TakeValue(words, at);
      int seconds = 0;
      const auto [end, fault] = std::from_chars(value.data(), value.data() + value.size(), seconds);
      if (fault != std::errc() || end != value.data() + value.size() || seconds < 1) {
        throw SetupToolFault("--seconds takes a whole number, not \"" + value + "\"");
      }
      options.milliseconds = std::int64_t{seconds} * 1000;
    } else if (words[at].starts_with("--") || named == 2) {
      throw SetupToolFault("listen does not know \"" + words[at] + "\"");
    } else {
      (named++ == 0 ? options.port : options.settings) = words[at];
    }
  }
  if (named == 0) throw SetupToolFault("listen takes a port: COM3, a device or tcp://host:port");
  if (!ParseLineSettings(options.settings)) {
    throw SetupToolFault("\"" + options.settings + "\" are no line settings; write them as 9600,N,8,1");
  }
  return options;
}

/// A COM number is looked up in the ports file of the program's folder; anything else is an address.
std::string AddressOf(const std::string& folder, const std::string& port) {
  const std::string digits = port.starts_with("COM") || port.starts_with("com") ? port.substr(3) : port;
  int number = 0;
  const auto [end, fault] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  const bool isNumber = fault == std::errc() && end == digits.data() + digits.size();
  if (!isNumber) return port;
  if (number < 1 || number > kLastPort + 1) {
    throw SetupToolFault("There is no port " + port + ", only COM1 to COM" + std::to_string(kLastPort + 1));
  }
  return SettingsFolder(folder).AddressOf(number);
}

/// One port, opened anew for each settings.
class Line {
 public:
  explicit Line(std::string address) : address_(std::move(address)) {}

  void Open(const std::string& settings) {
    SerialPort& port = ports_.Port(0);
    port.Close();
    port.SetCommPort(1);
    port.SetSettings(settings);
    port.Open();
  }
  /// What has arrived; waits a moment if there is nothing.
  std::string Read() {
    std::string bytes;
    ports_.Poll();
    SerialPort& port = ports_.Port(0);
    if (port.TakeLineLoss()) std::fprintf(stderr, "The line is gone; it is looked for.\n");
    if (port.InBufferCount() > 0) port.Input(bytes);
    if (bytes.empty()) std::this_thread::sleep_for(std::chrono::milliseconds(kLookMilliseconds));
    return bytes;
  }
  /// Calls `step` with what arrives until the time is over or Ctrl-C is pressed.
  template <typename Step>
  void Listen(std::int64_t milliseconds, const Step& step) {
    const std::int64_t start = MonotonicMilliseconds();
    while (interrupted == 0) {
      const std::string bytes = Read();
      const std::int64_t now = MonotonicMilliseconds();
      step(bytes, now);
      if (milliseconds > 0 && now - start >= milliseconds) return;
    }
  }

 private:
  std::string address_;
  PosixSerialPorts ports_{[this](int) { return address_; }};
};

/// The bytes as a capture: a line for what arrived at once.
class Recorder {
 public:
  Recorder(const std::string& path, const std::string& address, const std::string& settings) {
    if (path.empty()) return;
    file_.open(path, std::ios::binary);
    if (!file_) throw SetupToolFault(path + ": cannot be written");
    path_ = path;
    file_ << "# device: unknown\n# line:   " << settings << "\n# source: " << address << "\n" << std::flush;
  }
  void Take(const std::string& bytes) {
    if (path_.empty() || bytes.empty()) return;
    for (std::size_t at = 0; at < bytes.size(); ++at) {
      char text[4];
      std::snprintf(text, sizeof text, "%s%02X", at > 0 ? " " : "", static_cast<unsigned char>(bytes[at]));
      file_ << text;
    }
    file_ << "\n" << std::flush;
    if (!file_) throw SetupToolFault(path_ + ": cannot be written any more; what was recorded stands");
  }

 private:
  std::ofstream file_;
  std::string path_;
};

/// Prints frames; one that is the same as the last is counted.
class FramePrinter {
 public:
  void Print(const std::string& frame) {
    if (frame == last_) {
      ++repeats_;
      return;
    }
    Finish();
    last_ = frame;
    std::printf("%zu characters\n%s\n", frame.size(), PrintedStream(frame).c_str());
    std::fflush(stdout);
  }
  void Finish() {
    if (repeats_ > 0) std::printf("... and the same %d times more\n\n", repeats_);
    repeats_ = 0;
  }

 private:
  std::string last_;
  int repeats_ = 0;
};

int TrySettings(Line& line, const Tables& tables) {
  struct Tried {
    std::string settings;
    Cleanness found;
    std::string example;
  };
  std::vector<Tried> tried;
  for (int setup = 0; setup <= kLastPortSetup && interrupted == 0; ++setup) {
    const std::string& settings = tables.PortSettingsTable[setup];
    std::fprintf(stderr, "\rtrying %-12s %2d of %d", settings.c_str(), setup + 1, kLastPortSetup + 1);
    line.Open(settings);
    LineFrames cutter;
    std::vector<std::string> frames;
    const auto take = [&](const std::string& bytes, std::int64_t now) {
      for (std::string& frame : cutter.Take(bytes, now)) frames.push_back(std::move(frame));
    };
    line.Listen(kTryMilliseconds, take);
    if (frames.size() < kEnoughFrames && interrupted == 0) line.Listen(kTryLongerMilliseconds, take);
    if (!frames.empty()) frames.erase(frames.begin());  // the first one may have begun before
    tried.push_back({settings, CleannessOf(frames), frames.empty() ? "" : frames.back()});
  }
  std::fprintf(stderr, "\n");
  std::stable_sort(tried.begin(), tried.end(),
                   [](const Tried& a, const Tried& b) { return a.found.Score() > b.found.Score(); });
  if (tried.empty() || tried.front().found.Score() < 0.5) {
    std::printf("No settings gave clean frames. Does the device send by itself?\n");
    return 1;
  }
  std::printf("settings      frames  length   readable\n");
  for (const Tried& each : tried) {
    if (each.found.Score() < 0.5 * tried.front().found.Score()) break;
    std::printf("%-12s %7d %7d %8.0f %%\n", each.settings.c_str(), each.found.frames, each.found.usualLength,
                100 * each.found.readable);
  }
  std::printf("\n%s:\n%s", tried.front().settings.c_str(), PrintedStream(tried.front().example).c_str());
  return 0;
}

}  // namespace

int Listen(const std::string& folder, const Words& words) {
  const ListenOptions options = ReadOptions(words);
  const std::string address = AddressOf(folder, options.port);
  const std::string hindrance = PortStandingText(PosixPortProbe().LookAt(address));
  if (!hindrance.empty()) throw SetupToolFault(address + ": " + hindrance);
  std::signal(SIGINT, [](int) { interrupted = 1; });
  std::signal(SIGTERM, [](int) { interrupted = 1; });
  Line line(address);
  if (options.trySettings) {
    Tables tables;
    FillFixedTables(tables);
    return TrySettings(line, tables);
  }
  line.Open(options.settings);
  Recorder recorder(options.record, address, options.settings);
  std::fprintf(stderr, "Listening to %s at %s; Ctrl-C ends.\n", address.c_str(), options.settings.c_str());
  LineFrames cutter;
  FramePrinter printer;
  line.Listen(options.milliseconds, [&](const std::string& bytes, std::int64_t now) {
    recorder.Take(bytes);
    for (const std::string& frame : cutter.Take(bytes, now)) printer.Print(frame);
  });
  printer.Finish();
  return 0;
}
