#include "core/gdi_timer.h"

#include "core/engine.h"
#include "core/offline.h"
#include "core/tick_rate.h"

namespace {

void CountDrawingTick(Engine& engine) {
  Tables& tables = engine.tables;
  if (tables.RefreshOpen == False) return;
  const auto finished = CountTick(tables.GDIRate, tables.GDILastSecond, engine.system.WallSeconds());
  if (finished) engine.dialogs.ShowRate(3, *finished);
}

void Rest(Engine& engine) {
  if (engine.tables.GDITimerSleep > 0) engine.system.Sleep(engine.tables.GDITimerSleep);
}

}  // namespace

void GDITimerTick(Engine& engine) {
  const Tables& tables = engine.tables;
  MarkChannelsOfAHeldScan(engine);
  if (tables.GdiEnabled == False || tables.ScreenPainted == False) return;
  CountDrawingTick(engine);
  if (tables.Minimized == True) {
    Rest(engine);
    return;
  }
  // The rests of a pass add up to more than a key on the setup screen may wait.
  const bool someoneTypes = tables.EditedChannel != kNoChannel;
  for (int ch = 0; ch <= tables.MaxChannel; ++ch) {
    for (int item = 0; item < Item::Count; ++item) engine.mainForm.DrawItem(ch, item);
    if (!someoneTypes) Rest(engine);
  }
}
