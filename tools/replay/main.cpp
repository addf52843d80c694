// tarvex-replay: what the manager makes of the bytes that a device has sent.

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iostream>

#include "platform/posix/posix_files.h"
#include "platform/posix/program_folder.h"
#include "tools/replay/capture.h"
#include "tools/replay/json_lines.h"
#include "tools/replay/options.h"
#include "tools/replay/table_printer.h"

namespace {

enum Exit { kReplayed = 0, kNotReplayed = 2 };

void Warn(const std::string& text) { std::cerr << "tarvex-replay: " << text << '\n'; }

void RequireFile(const std::string& path) {
  if (path.empty()) return;
  std::error_code ignored;
  if (!std::filesystem::exists(path, ignored)) {
    throw RunTimeError(ErrorNumber::FileNotFound, path + ": there is no such file");
  }
  if (std::filesystem::is_directory(path, ignored)) {
    throw RunTimeError(ErrorNumber::PathFileAccess, path + ": is a folder");
  }
}

void ChooseHome(ReplaySetup& setup) {
  std::error_code ignored;
  const bool named = !setup.home.empty();
  setup.home = named ? std::filesystem::absolute(setup.home).lexically_normal().string() : ProgramFolder();
  while (setup.home.size() > 1 && setup.home.back() == '/') setup.home.pop_back();
  if (std::filesystem::is_directory(setup.home, ignored)) return;
  if (named) throw RunTimeError(ErrorNumber::FileNotFound, setup.home + ": there is no such folder");
  Warn("warning: there is no program's folder " + setup.home + "; every file has its defaults");
}

void Play(Replay& replay, CaptureReader& capture, bool json) {
  TablePrinter table(std::cout);
  bool actedLast = false;
  while (const auto step = capture.Next()) {
    if (const auto* writes = std::get_if<DeviceWrites>(&*step)) replay.Act(*writes);
    if (const auto* arrivals = std::get_if<OpcArrivals>(&*step)) replay.Act(*arrivals);
    const auto* arriving = std::get_if<ArrivingBytes>(&*step);
    actedLast = arriving == nullptr;
    if (actedLast) continue;
    const TickEvents events = replay.Tick(arriving->bytes);
    if (json) {
      std::cout << ToJson(replay, events).dump() << '\n';
    } else {
      table.Print(replay, events);
    }
  }
  table.Finish();
  if (actedLast) Warn("warning: " + capture.Place() + ": no tick follows the last action");
}

int Run(ReplayOptions options) {
  RequireFile(options.setup.format);
  RequireFile(options.setup.channel);
  RequireFile(options.capture);
  ChooseHome(options.setup);
  PosixFiles files;
  Replay replay(files, options.setup);
  for (const std::string& warning : replay.Warnings()) Warn("warning: " + warning);

  std::ifstream file;
  if (options.capture.empty()) {
    if (isatty(STDIN_FILENO)) Warn("type the capture, one line a tick; Ctrl-D ends it");
    CaptureReader capture(std::cin, "standard input");
    Play(replay, capture, options.json);
    return kReplayed;
  }
  file.open(options.capture, std::ios::binary);
  if (!file) throw RunTimeError(ErrorNumber::PermissionDenied, options.capture + ": cannot be opened");
  CaptureReader capture(file, options.capture);
  Play(replay, capture, options.json);
  return kReplayed;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const ReplayOptions options = ReadReplayOptions({argv + 1, argv + argc});
    if (options.help) {
      std::cout << kReplayHelp;
      return kReplayed;
    }
    return Run(options);
  } catch (const std::exception& fault) {
    std::cout.flush();
    Warn(fault.what());
    return kNotReplayed;
  }
}
