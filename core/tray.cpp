#include "core/tray.h"

#include "core/engine.h"
#include "core/error_trap.h"

void PutInTray(Engine& engine, TrayArea& area) {
  Tables& tables = engine.tables;
  if (tables.DebugMode == True) return;
  WriteActivity(engine, "Tarvex Manager Minimized");
  tables.ScreenPainted = False;
  area.AddIcon();
  area.Animate(true);
  tables.Minimized = True;
  area.HideWindow();
}

void RestoreByDoubleClick(Engine& engine, TrayArea& area) {
  area.RemoveIcon();
  area.Animate(false);
  engine.events.DoEvents();
  engine.tables.Minimized = False;
  area.ShowWindow();
}

void RestoreByMenu(Engine& engine, TrayArea& area) {
  if (engine.tables.DebugMode == True) return;
  WriteActivity(engine, "Tarvex Manager Maximized");
  area.RemoveIcon();
  engine.tables.Minimized = False;
  area.ShowWindow();
}
