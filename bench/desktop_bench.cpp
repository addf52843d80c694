/// What it costs to draw the whole weigh screen: 32 rows of 13 cells, drawn off-screen and shown in the window. On a
/// window system of its own in memory, unless QT_QPA_PLATFORM names another; QT_SCALE_FACTOR counts.
#include <benchmark/benchmark.h>

#include "core/channel_state.h"
#include "tests/ui/panel_plant.h"

namespace {

void FillRows(Tables& tables) {
  for (int ch = 0; ch < kChannels; ++ch) {
    tables.ChanDeviceDesc[ch] = "Checkweigher line " + std::to_string(ch);
    tables.ChanGross[ch] = std::to_string(10'000 + 37 * ch);
    tables.ChanTare[ch] = "  17.4";
    tables.ChanNet[ch] = std::to_string(9'000 + 37 * ch);
    tables.ChanStatusText[ch] = "Online...";
    for (int item = Item::Rx; item <= Item::Error; ++item) tables.ChanIndicator[item][ch] = True;
  }
}

void RepaintAllCells(benchmark::State& state) {
  PanelPlant plant(static_cast<int>(state.range(0)));
  plant.Launch();
  FillRows(plant.tables);
  const auto repaint = [&] {
    ForceRepaint(plant.tables);
    GDITimerTick(plant.engine);
    QCoreApplication::processEvents();
  };
  for (int warm = 0; warm < 10; ++warm) repaint();
  for (auto _ : state) repaint();
  for (int item = 0; item < Item::Count; ++item) {
    for (int ch = 0; ch < kChannels; ++ch) {
      if (plant.tables.ChanDirty[item][ch] == True) state.SkipWithError("a cell was not drawn");
    }
  }
}
BENCHMARK(RepaintAllCells)->Arg(800)->Arg(1024)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int count, char** texts) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(count, texts);
  benchmark::Initialize(&count, texts);
  benchmark::RunSpecifiedBenchmarks();
}
