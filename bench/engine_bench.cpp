/// What one stream and one tick cost on a fake outside: no port, no screen, no clock.
#include <benchmark/benchmark.h>

#include <array>

#include "bench/allocation_count.h"
#include "bench/standard_protocol.h"
#include "core/reception.h"
#include "protocol/status.h"

namespace {

void ReportAllocations(benchmark::State& state, std::size_t before) {
  state.counters["allocations"] =
      benchmark::Counter(static_cast<double>(AllocationCount() - before), benchmark::Counter::kAvgIterations);
}

void ParseTwentyRows(benchmark::State& state) {
  TestPlant plant;
  SetUpStandardProtocol(plant);
  plant.Connect(0, kBenchProtocol);
  const std::string stream = StandardStream(1250);
  ParseStatusData(plant.tables, stream, 0, kBenchProtocol);
  const std::size_t before = AllocationCount();
  for (auto _ : state) {
    ParseStatusData(plant.tables, stream, 0, kBenchProtocol);
    benchmark::DoNotOptimize(plant.tables.ChanStatusBits[0]);
  }
  ReportAllocations(state, before);
}
BENCHMARK(ParseTwentyRows);

/// Bytes in, framed, decoded, formatted, compared; `change` makes every stream another weight.
void ReceptionStep(benchmark::State& state, bool change) {
  TestPlant plant;
  SetUpStandardProtocol(plant);
  plant.Connect(0, kBenchProtocol);
  std::array<std::string, 64> streams;
  for (int index = 0; index < 64; ++index) {
    streams[static_cast<std::size_t>(index)] = StandardStream(change ? 1000 + index * 37 : 1250);
  }
  MemoryPort& port = plant.ports.port[0];
  std::size_t next = 0;
  const auto step = [&] {
    port.waiting = streams[next++ % streams.size()];
    ReceptionCycle(plant.engine, 0);
  };
  for (int warm = 0; warm < 100; ++warm) step();
  const std::size_t before = AllocationCount();
  for (auto _ : state) step();
  ReportAllocations(state, before);
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK_CAPTURE(ReceptionStep, unchanged, false);
BENCHMARK_CAPTURE(ReceptionStep, changed, true);

void ConnectAll(TestPlant& plant) {
  SetUpStandardProtocol(plant);
  for (int ch = 0; ch < kChannels; ++ch) plant.Connect(ch, kBenchProtocol);
}

void IdleTick(benchmark::State& state) {
  TestPlant plant;
  ConnectAll(plant);
  plant.Tick();
  const std::size_t before = AllocationCount();
  for (auto _ : state) plant.Tick();
  ReportAllocations(state, before);
}
BENCHMARK(IdleTick);

void TickWithAllStreams(benchmark::State& state) {
  TestPlant plant;
  ConnectAll(plant);
  const std::array<std::string, 2> streams = {StandardStream(1250), StandardStream(1260)};
  std::size_t tick = 0;
  for (auto _ : state) {
    const std::string& stream = streams[tick++ % 2];
    for (MemoryPort& port : plant.ports.port) port.waiting = stream;
    plant.Tick();
  }
}
BENCHMARK(TickWithAllStreams);

}  // namespace
