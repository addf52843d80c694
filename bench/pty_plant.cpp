#include "bench/pty_plant.h"

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

#include "config/channel_file.h"
#include "config/format_file.h"
#include "config/system_file.h"
#include "tests/support/test_plant.h"

namespace {

constexpr int kProtocol = 10;
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
std::map<std::string, std::string> SettingsFiles(const std::string& folder, int timer1Interval, int timer1Sleep) {
  TestPlant plant;
  Tables& tables = plant.tables;
  tables.ProgramFolder = folder;
  tables.Timer1Interval = timer1Interval;
  tables.Timer1Sleep = timer1Sleep;
  WriteSystemFile(tables, plant.files);
  tables.ProtoTerminator[kProtocol] = '\r';
  tables.ProtoMaxStream[kProtocol] = 2 * (kDigits + 1);  // as formats have it: a longer buffer reads older streams
  tables.ProtoGrossEnable[kProtocol] = True;
  tables.ProtoGrossPos[kProtocol] = 1;
  tables.ProtoGrossLen[kProtocol] = kDigits;
  SaveFormatFile(tables, plant.files, kProtocol);
  for (int ch = 0; ch < PtyPlant::kScales; ++ch) {
    RestoreChannelDefaults(tables, plant.files, ch);
    tables.ChanProtocol[ch] = kProtocol;
    tables.ChanPort[ch] = ch;
    tables.ChanEnabled[ch] = True;
    WriteChannelFile(tables, plant.files, ch);
  }
  return plant.files.content;
}

}  // namespace

PtyPlant::PtyPlant(int timer1Interval, int timer1Sleep) {
  std::string pattern = std::filesystem::temp_directory_path() / "tarvex-plant-XXXXXX";
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
  folder_ = pattern;
  for (const auto& [path, content] : SettingsFiles(folder_, timer1Interval, timer1Sleep)) {
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
