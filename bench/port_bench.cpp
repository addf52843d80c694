/// What a tick costs with 32 real pseudo-terminals behind it: silent, and with a stream on each.
#include <benchmark/benchmark.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

#include "bench/allocation_count.h"
#include "bench/standard_protocol.h"
#include "core/scan_engine.h"
#include "platform/posix/posix_serial_ports.h"

namespace {

/// 32 pseudo-terminals; the bench writes at their masters what the devices would send.
class Lines {
 public:
  Lines() {
    for (std::size_t ch = 0; ch < masters_.size(); ++ch) {
      int slave = -1;
      termios raw{};
      cfmakeraw(&raw);
      std::array<char, 64> name{};
      if (openpty(&masters_[ch], &slave, name.data(), &raw, nullptr) != 0)
        throw std::runtime_error("no pseudo-terminal");
      names_[ch] = name.data();
      close(slave);
    }
  }
  ~Lines() {
    for (const int master : masters_) close(master);
  }
  Lines(const Lines&) = delete;
  Lines& operator=(const Lines&) = delete;

  const std::string& Name(int comNumber) const { return names_[static_cast<std::size_t>(comNumber - 1)]; }
  void SendToAll(const std::string& stream) {
    for (const int master : masters_) {
      if (write(master, stream.data(), stream.size()) < 0) throw std::runtime_error("a line is full");
    }
  }

 private:
  std::array<int, kChannels> masters_{};
  std::array<std::string, kChannels> names_;
};

/// The real engine and the real ports; the rest of the outside is fake.
struct PlantOnLines {
  Lines lines;
  TestPlant fake;
  PosixSerialPorts ports{[this](int comNumber) { return lines.Name(comNumber); }};
  Engine engine{fake.tables,
                fake.system,
                fake.events,
                ports,
                fake.files,
                fake.notice,
                fake.engine.log,
                fake.engine.configuration,
                fake.engine.publisher,
                fake.engine.terminal,
                fake.startupForm,
                fake.mainForm,
                fake.dialogs};

  PlantOnLines() {
    SetUpStandardProtocol(fake);
    for (int ch = 0; ch < kChannels; ++ch) {
      fake.Connect(ch, kBenchProtocol);
      ports.Port(ch).SetCommPort(ch + 1);
      ports.Port(ch).Open();
    }
  }
};

void IdleTickOnLines(benchmark::State& state) {
  PlantOnLines plant;
  Timer1Tick(plant.engine);
  const std::size_t before = AllocationCount();
  for (auto _ : state) Timer1Tick(plant.engine);
  state.counters["allocations"] =
      benchmark::Counter(static_cast<double>(AllocationCount() - before), benchmark::Counter::kAvgIterations);
}
BENCHMARK(IdleTickOnLines);

void TickWithAllStreamsOnLines(benchmark::State& state) {
  PlantOnLines plant;
  const std::array<std::string, 2> streams = {StandardStream(1250), StandardStream(1260)};
  std::size_t tick = 0;
  for (auto _ : state) {
    state.PauseTiming();
    plant.lines.SendToAll(streams[tick++ % 2]);
    usleep(200);  // the line discipline hands bytes on in the background
    state.ResumeTiming();
    Timer1Tick(plant.engine);
  }
}
BENCHMARK(TickWithAllStreamsOnLines)->Iterations(5000);

}  // namespace
