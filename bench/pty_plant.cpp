#include "bench/pty_plant.h"

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <stdexcept>

#include "bench/child.h"
#include "config/channel_file.h"
#include "config/format_file.h"
#include "config/system_file.h"
#include "tests/support/test_plant.h"

namespace {

constexpr int kProtocol = 10;
constexpr int kFaultyProtocol = 33;  // cannot take the decimal point from status data
constexpr int kDigits = 6;

int OpenScale() {
  const int scale = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  if (scale < 0 || grantpt(scale) != 0 || unlockpt(scale) != 0) throw std::runtime_error("no pseudo-terminal");
  termios line{};
  tcgetattr(scale, &line);
  cfmakeraw(&line);
  tcsetattr(scale, TCSANOW, &line);
  return scale;
}

/// The settings files, written by the code that writes them in the program.
std::map<std::string, std::string> SettingsFiles(const std::string& folder, int timer1Interval, int timer1Sleep,
                                                 PtyPlant::Injury injury, const std::string& opcEndpoint) {
  TestPlant plant;
  Tables& tables = plant.tables;
  tables.ProgramFolder = folder;
  tables.Timer1Interval = timer1Interval;
  tables.Timer1Sleep = timer1Sleep;
  WriteSystemFile(tables, plant.files);
  for (const int proto : {kProtocol, kFaultyProtocol}) {
    tables.ProtoTerminator[proto] = '\r';
    tables.ProtoMaxStream[proto] = 2 * (kDigits + 1);  // as formats have it: a longer buffer reads older streams
    tables.ProtoGrossEnable[proto] = True;
    tables.ProtoGrossPos[proto] = 1;
    tables.ProtoGrossLen[proto] = kDigits;
  }
  plant.AddStatusRow(kFaultyProtocol, {"Decimal Place XXXX.XX", "(WEIGHT)", "1b4", "1b1", "16", "X"});
  for (const int proto : {kProtocol, kFaultyProtocol}) SaveFormatFile(tables, plant.files, proto);
  for (int ch = 0; ch < PtyPlant::kScales; ++ch) {
    RestoreChannelDefaults(tables, plant.files, ch);
    const bool faulty = injury == PtyPlant::Injury::Faults && ch == PtyPlant::kInjured;
    tables.ChanProtocol[ch] = faulty ? kFaultyProtocol : kProtocol;
    tables.ChanPort[ch] = ch;
    tables.ChanEnabled[ch] = True;
    tables.ChanOpcEnabled[ch] = opcEndpoint.empty() ? False : True;
    tables.ChanOpcServerName[ch] = opcEndpoint;
    WriteChannelFile(tables, plant.files, ch);
  }
  return plant.files.content;
}

}  // namespace

PtyPlant::PtyPlant(int timer1Interval, int timer1Sleep, Injury injury, const std::string& opcEndpoint) {
  std::string pattern = std::filesystem::temp_directory_path() / "tarvex-plant-XXXXXX";
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
  folder_ = pattern;
  for (const auto& [path, content] : SettingsFiles(folder_, timer1Interval, timer1Sleep, injury, opcEndpoint)) {
    std::ofstream(path) << content;
  }
  std::ofstream ports(folder_ / "Tarvex-Ports.Cfg");
  for (int scale = 0; scale < kScales; ++scale) {
    scales_[static_cast<std::size_t>(scale)] = OpenScale();
    ports << scale + 1 << ",\"" << ptsname(scales_[static_cast<std::size_t>(scale)]) << "\"\n";
  }
}

PtyPlant::~PtyPlant() {
  for (const int scale : scales_) close(scale);
  std::filesystem::remove_all(folder_);
}

void PtyPlant::Send(int scale, int weight) const {
  char stream[16];
  const int size = std::snprintf(stream, sizeof stream, "%0*d\r", kDigits, weight);
  if (write(scales_[static_cast<std::size_t>(scale)], stream, static_cast<std::size_t>(size)) != size) {
    std::perror("a scale cannot send");
  }
}

void PtyPlant::SendOfAll(int streamsASecond) const {
  constexpr std::int64_t kSecond = 1'000'000'000;
  std::int64_t due = Now();
  for (int stream = 0;; stream = (stream + 1) % 1'000'000) {
    Send(stream % kScales, stream);
    due += kSecond / (streamsASecond * kScales);
    if (const std::int64_t rest = due - Now(); rest > 0) usleep(static_cast<useconds_t>(rest / 1000));
  }
}

void PtyPlant::SendNumbered(SendTimes& sent, int streams, int firstScale) const {
  constexpr std::int64_t kSecond = 1'000'000'000;
  std::int64_t due = Now();
  for (int stream = 0; stream < streams; ++stream) {
    const timespec at{due / kSecond, due % kSecond};
    clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &at, nullptr);
    sent[static_cast<std::size_t>(stream)] = Now();
    if (stream % kScales >= firstScale) Send(stream % kScales, stream);
    due += kSecond / kNumberedStreamsASecond;
  }
  for (;;) pause();
}

void PtyPlant::SendOfInjured(Injury injury) const {
  const int line = scales_[kInjured];
  const std::string noise(64, '7');
  for (;;) {
    if (injury == Injury::Faults) Send(kInjured, 1250);
    if (injury == Injury::Babbles && write(line, noise.data(), noise.size()) < 0) std::perror("a scale cannot babble");
    usleep(1000);
  }
}
