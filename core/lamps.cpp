#include "core/lamps.h"

#include <cstdlib>

#include "core/forms.h"
#include "core/tables.h"

namespace {

constexpr int kTicksVisible = 1;
constexpr int kTicksMinimized = 10;

/// A traffic lamp is drawn at once: it may be off again before the screen's own timer comes to it.
void TurnLamp(Tables& tables, MainForm& mainForm, int ch, int item, bool on) {
  SetLamp(tables, ch, item, on);
  tables.ChanLampTick[item][ch] = tables.ScanTick;
  mainForm.DrawItem(ch, item);
}

/// True if the lamp has changed.
bool SwitchTrafficLamp(Tables& tables, MainForm& mainForm, int ch, int item, bool on) {
  if ((tables.ChanIndicator[item][ch] == True) == on) return false;
  const int pacing = tables.Minimized == True ? kTicksMinimized : kTicksVisible;
  if (TicksSince(tables, tables.ChanLampTick[item][ch]) < pacing) return false;
  TurnLamp(tables, mainForm, ch, item, on);
  return true;
}

void SwitchTrafficLampInTray(Tables& tables, MainForm& mainForm, int ch, int item, bool on, TrayPicture picture) {
  if (!SwitchTrafficLamp(tables, mainForm, ch, item, on)) return;
  if (tables.Minimized == True && tables.DebugMode == False) mainForm.SetTrayPicture(picture);
}

}  // namespace

int TicksSince(const Tables& tables, int tick) { return std::abs(tables.ScanTick - tick); }

void SetLamp(Tables& tables, int ch, int item, bool on) {
  const Boolean value = AsBoolean(on);
  if (tables.ChanIndicator[item][ch] == value) return;
  tables.ChanIndicator[item][ch] = value;
  tables.ChanDirty[item][ch] = True;
}

void TurnRXLedON(Tables& tables, MainForm& mainForm, int ch) {
  SwitchTrafficLampInTray(tables, mainForm, ch, Item::Rx, true, TrayPicture::iRcv);
}

void TurnRXLedONInRow(Tables& tables, MainForm& mainForm, int ch) {
  SwitchTrafficLamp(tables, mainForm, ch, Item::Rx, true);
}

void TurnRXLedOff(Tables& tables, MainForm& mainForm, int ch) {
  SwitchTrafficLampInTray(tables, mainForm, ch, Item::Rx, false, TrayPicture::iIdle);
}

void TurnTXLedON(Tables& tables, MainForm& mainForm, int ch) {
  SwitchTrafficLampInTray(tables, mainForm, ch, Item::Tx, true, TrayPicture::iXmit);
}

void TurnTXLedOff(Tables& tables, MainForm& mainForm, int ch) {
  if (TicksSince(tables, tables.ChanLampTick[Item::Tx][ch]) < kTicksVisible) return;
  PutTXLedOut(tables, mainForm, ch);
}

void PutTXLedOut(Tables& tables, MainForm& mainForm, int ch) {
  if (tables.ChanIndicator[Item::Tx][ch] == True) TurnLamp(tables, mainForm, ch, Item::Tx, false);
}
