/// tarvex-sim: the weighing devices of a whole plant on pseudo-terminals, in one process.
#include <fcntl.h>
#include <poll.h>
#include <sys/signalfd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>

#include "core/version.h"
#include "tools/sim/plant.h"
#include "tools/sim/plant_file.h"

namespace {

constexpr int kUsageError = 2;
constexpr int kStepMilliseconds = 5;

constexpr std::string_view kUsage =
    "Usage: tarvex-sim --plant FILE | --scales N [options]\n"
    "  --plant FILE     devices as the file describes them\n"
    "  --scales N       N plain scales whose weight changes all the time, for measurements\n"
    "  --rate R         frames a second of the plain scales (20 if not given)\n"
    "  --links FOLDER   where the links of the pseudo-terminals are made (the present folder if not given)\n"
    "  --ports FILE     write the addresses of all devices as a Tarvex-Ports.Cfg\n"
    "  --control PATH   make a pipe there that takes the same words as standard input\n"
    "  --seed N         another course of chance\n"
    "  --seconds N      end by itself\n"
    "  --version, --help\n"
    "Words on standard input:\n";

struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// `--name value` pairs; every name must be known.
std::map<std::string, std::string> ReadOptions(int argc, char** argv) {
  static constexpr std::array kNames = {"--plant", "--scales",  "--rate", "--links",
                                        "--ports", "--control", "--seed", "--seconds"};
  std::map<std::string, std::string> options;
  for (int index = 1; index < argc; index += 2) {
    const std::string name = argv[index];
    if (std::find(kNames.begin(), kNames.end(), name) == kNames.end()) throw UsageError("There is no option " + name);
    if (index + 1 >= argc) throw UsageError(name + " needs a value");
    options[name] = argv[index + 1];
  }
  return options;
}

double NumberOption(const std::map<std::string, std::string>& options, const std::string& name, double otherwise) {
  const auto option = options.find(name);
  if (option == options.end()) return otherwise;
  char* end = nullptr;
  const double value = std::strtod(option->second.c_str(), &end);
  if (end == option->second.c_str() || *end != '\0' || !(value >= 0)) {
    throw UsageError(name + " needs a number, not \"" + option->second + "\"");
  }
  return value;
}

std::vector<DeviceSettings> ReadDevices(const std::map<std::string, std::string>& options, const std::string& links) {
  if (const auto plant = options.find("--plant"); plant != options.end()) {
    std::ifstream file(plant->second);
    std::ostringstream text;
    text << file.rdbuf();
    if (!file) throw PlantFileError(plant->second + " cannot be read");
    return ReadPlant(text.str(), plant->second, links);
  }
  const int scales = static_cast<int>(NumberOption(options, "--scales", 0));
  if (scales < 1 || scales > 32) throw UsageError("Name a plant file, or --scales from 1 to 32");
  return PlainPlant(scales, NumberOption(options, "--rate", 20), links);
}

double Now() {
  timespec time{};
  clock_gettime(CLOCK_MONOTONIC, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

/// A source of words: standard input or the control pipe.
class WordSource {
 public:
  explicit WordSource(int descriptor) : descriptor_(descriptor) {}
  int Descriptor() const { return descriptor_; }

  /// Hands each whole line that has come to the plant.
  void Read(Plant& plant) {
    std::array<char, 512> buffer;
    const ssize_t size = read(descriptor_, buffer.data(), buffer.size());
    if (size <= 0) {
      descriptor_ = -1;  // whoever spoke has gone; the plant goes on
      return;
    }
    text_.append(buffer.data(), static_cast<std::size_t>(size));
    for (std::size_t end = text_.find('\n'); end != std::string::npos; end = text_.find('\n')) {
      std::cout << plant.Obey(text_.substr(0, end)) << std::flush;
      text_.erase(0, end + 1);
    }
  }

 private:
  int descriptor_;
  std::string text_;
};

/// A named pipe that is removed at the end; both ends are held so that it never reads as ended.
class ControlPipe {
 public:
  explicit ControlPipe(const std::string& path) : path_(path) {
    if (path.empty()) return;
    if (mkfifo(path.c_str(), 0600) != 0 && errno != EEXIST)
      throw std::system_error(errno, std::generic_category(), path);
    descriptor_ = open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (descriptor_ < 0) throw std::system_error(errno, std::generic_category(), path);
  }
  ControlPipe(const ControlPipe&) = delete;
  ControlPipe& operator=(const ControlPipe&) = delete;
  ~ControlPipe() {
    if (descriptor_ < 0) return;
    close(descriptor_);
    unlink(path_.c_str());
  }
  int Descriptor() const { return descriptor_; }

 private:
  std::string path_;
  int descriptor_ = -1;
};

int EndingSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&signals, signal);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  return signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
}

void RunPlant(Plant& plant, const std::string& controlPath, double seconds) {
  const int signals = EndingSignals();
  const ControlPipe control(controlPath);
  WordSource standardInput(STDIN_FILENO);
  WordSource pipe(control.Descriptor());
  const double start = Now();
  for (;;) {
    std::array<pollfd, 3> sources = {pollfd{signals, POLLIN, 0}, pollfd{standardInput.Descriptor(), POLLIN, 0},
                                     pollfd{pipe.Descriptor(), POLLIN, 0}};
    poll(sources.data(), sources.size(), kStepMilliseconds);
    if (sources[0].revents != 0) return;
    if (sources[1].revents != 0) standardInput.Read(plant);
    if (sources[2].revents != 0) pipe.Read(plant);
    const double now = Now() - start;
    if (plant.Ended() || (seconds > 0 && now >= seconds)) return;
    plant.Run(now);
  }
}

std::string OptionOr(const std::map<std::string, std::string>& options, const std::string& name,
                     std::string otherwise) {
  const auto option = options.find(name);
  return option == options.end() ? otherwise : option->second;
}

int Run(int argc, char** argv) {
  const auto options = ReadOptions(argc, argv);
  const std::string links = std::filesystem::absolute(OptionOr(options, "--links", ".")).lexically_normal().string();
  std::filesystem::create_directories(links);
  Plant plant(ReadDevices(options, links), static_cast<std::uint32_t>(NumberOption(options, "--seed", 1)));
  if (const std::string ports = OptionOr(options, "--ports", ""); !ports.empty()) {
    std::ofstream file(ports, std::ios::binary);
    file << plant.PortFile();
    if (!file.flush()) throw std::runtime_error(ports + " cannot be written");
  }
  std::cout << plant.Size() << " scales are on the line.\n" << std::flush;
  RunPlant(plant, OptionOr(options, "--control", ""), NumberOption(options, "--seconds", 0));
  std::cout << plant.FramesSent() << " frames sent.\n";
  return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string_view first = argc > 1 ? argv[1] : "";
  if (first == "--help") {
    std::cout << kUsage << Plant::Help();
    return EXIT_SUCCESS;
  }
  if (first == "--version") {
    std::cout << "tarvex-sim " << kVersionMajor << "." << kVersionMinor << "." << kVersionRevision << "\n";
    return EXIT_SUCCESS;
  }
  signal(SIGPIPE, SIG_IGN);
  try {
    return Run(argc, argv);
  } catch (const UsageError& error) {
    std::cerr << error.what() << "\n" << kUsage << Plant::Help();
    return kUsageError;
  } catch (const std::exception& error) {
    std::cerr << "tarvex-sim: " << error.what() << "\n";
    return EXIT_FAILURE;
  }
}
