// tarvex-sim: the weighing devices of a whole plant on pseudo-terminals, in one process.

#include <poll.h>
#include <sys/resource.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <vector>

#include "core/version.h"
#include "tools/sim/link_folder.h"
#include "tools/sim/options.h"
#include "tools/sim/plant.h"
#include "tools/sim/plant_file.h"
#include "tools/sim/terminal_network.h"
#include "tools/sim/word_sources.h"
#include "tools/sim/words.h"

using namespace sim;

namespace {

constexpr int kUsageError = 2;
constexpr int kStepMilliseconds = 5;

PlantSettings ReadPlantFile(const std::string& path) {
  std::ifstream file(path);
  std::ostringstream text;
  text << file.rdbuf();
  if (!file) throw PlantFileError(path + " cannot be read");
  return ReadPlant(text.str(), path);
}

/// Whoever waits for the file never sees half of it.
void WritePorts(const Plant& plant, const std::string& path) {
  const std::string fresh = path + ".new";
  std::ofstream file(fresh, std::ios::binary);
  file << PortFile(plant);
  file.close();
  if (!file) throw std::runtime_error(path + " cannot be written");
  std::filesystem::rename(fresh, path);
}

void PrintPlant(const Plant& plant, const TerminalNetwork& network) {
  for (const Device& device : plant.Devices()) {
    std::printf("COM%-3d %-28s %s\n", device.Settings().com, device.Settings().name.c_str(),
                device.Wire().Address().c_str());
  }
  for (const SqlClient& client : plant.Clients()) {
    std::printf("COM%-3d %-28s %s\n", client.Settings().com, client.Settings().name.c_str(),
                client.Wire().Address().c_str());
  }
  for (const Terminal& terminal : network.Terminals()) {
    std::printf("v%-5d %-28s on the network\n", terminal.Settings().node, terminal.Settings().name.c_str());
  }
  std::printf("%zu scales are on the line. Type help for what can be done to them.\n", plant.Devices().size());
  std::fflush(stdout);
}

void PrintSummary(const Plant& plant, const TerminalNetwork& network) {
  for (const SqlClient& client : plant.Clients()) std::printf("%s\n", client.Report().c_str());
  for (const Terminal& terminal : network.Terminals()) std::printf("%s\n", terminal.Report().c_str());
  long sent = 0;
  long leftOut = 0;
  for (const Device& device : plant.Devices()) {
    sent += device.Sender().FramesSent();
    leftOut += device.Sender().FramesLeftOut();
  }
  rusage used{};
  getrusage(RUSAGE_SELF, &used);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  std::printf("%ld frames sent, %ld left out on a busy line, %.2f seconds of processor time.\n", sent, leftOut,
              seconds(used.ru_utime) + seconds(used.ru_stime));
}

Descriptor EndingSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&signals, signal);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  return Descriptor(signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC));
}

/// False if one of the words ends the plant.
bool ObeyAll(Plant& plant, TerminalNetwork& network, WordSource& source) {
  for (const std::string& line : source.Lines()) {
    if (const auto told = network.Obey(line)) {
      std::fputs(told->c_str(), stdout);
      continue;
    }
    const Answer answer = Obey(plant, line);
    std::fputs(answer.text.c_str(), stdout);
    if (answer.end) return false;
  }
  return true;
}

void RunPlant(Plant& plant, TerminalNetwork& network, int endingSignals, const ControlPipe& control, double seconds) {
  using Clock = std::chrono::steady_clock;
  WordSource person(STDIN_FILENO);
  WordSource pipe(control.Handle());
  const auto start = Clock::now();
  double lastRun = -1;
  for (;;) {
    std::vector<pollfd> watches = {pollfd{endingSignals, POLLIN, 0}, pollfd{person.Watched(), POLLIN, 0},
                                   pollfd{pipe.Watched(), POLLIN, 0}};
    network.AddWatches(watches);
    poll(watches.data(), watches.size(), kStepMilliseconds);
    if (watches[0].revents != 0) return;
    if (watches[1].revents != 0 && !ObeyAll(plant, network, person)) return;
    if (watches[2].revents != 0 && !ObeyAll(plant, network, pipe)) return;
    const double now = std::chrono::duration<double>(Clock::now() - start).count();
    if (seconds > 0 && now >= seconds) return;
    network.Run(now);
    if (now - lastRun < kStepMilliseconds / 1000.0) continue;  // only the network had something to say
    lastRun = now;
    plant.Run(now);
    std::fputs(plant.TakeNews().c_str(), stdout);
    std::fflush(stdout);
  }
}

int Run(const Options& options) {
  // Blocked before the first link is made, so that none can be left behind.
  const Descriptor endingSignals = EndingSignals();
  PlantSettings settings =
      options.plant.empty() ? PlainPlant(options.scales, options.rate) : ReadPlantFile(options.plant);
  const LinkFolder links(!options.links.empty() ? options.links : !settings.links.empty() ? settings.links : ".");
  PlaceLinks(settings, links.Path());
  Plant plant(settings.devices, options.seed.value_or(settings.seed), settings.clients);
  TerminalNetwork network(settings.terminals, options.vant);
  const ControlPipe control(options.control);
  if (!options.ports.empty()) WritePorts(plant, options.ports);
  PrintPlant(plant, network);
  RunPlant(plant, network, endingSignals.Get(), control, options.seconds);
  PrintSummary(plant, network);
  return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
  signal(SIGPIPE, SIG_IGN);
  signal(SIGTTIN, SIG_IGN);  // in the background of a terminal the plant runs on, without words from there
  try {
    const Options options = ReadOptions({argv + 1, argv + argc});
    if (options.help) {
      std::cout << HelpOnOptions() << "Words on standard input:\n" << HelpOnWords();
    } else if (options.version) {
      std::cout << "tarvex-sim " << kVersionMajor << "." << kVersionMinor << "." << kVersionRevision << "\n";
    } else {
      return Run(options);
    }
    return EXIT_SUCCESS;
  } catch (const UsageError& error) {
    std::cerr << error.what() << "\n" << HelpOnOptions();
    return kUsageError;
  } catch (const std::exception& error) {
    std::cerr << "tarvex-sim: " << error.what() << "\n";
    return EXIT_FAILURE;
  }
}
