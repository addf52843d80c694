#include "core/shutdown.h"

#include "core/channel_state.h"
#include "core/engine.h"
#include "core/error_trap.h"
#include "core/offline.h"
#include "core/told_faults.h"

namespace {

void CloseIfOpen(Engine& engine, int ch) {
  SerialPort& port = engine.ports.Port(ch);
  if (port.PortOpen()) port.Close();
}

void CloseTerminalLink(Engine& engine) {
  GoOnAfterFault([&] { engine.terminal.CloseProcess(); });
  engine.tables.TerminalLinkUp = False;
}

}  // namespace

void CloseLinks(Engine& engine) {
  Tables& tables = engine.tables;
  tables.Stopped = True;
  engine.events.Timer1().SetEnabled(false);
  GoOnAfterFault([&] { engine.terminal.AbandonStatements(); });
  CloseTerminalLink(engine);
  for (int ch = 0; ch <= tables.MaxChannel; ++ch) {
    if (tables.ChanConnected[ch] == True) {
      MarkWeightsOld(engine, ch);
      SetCaption(tables, ch, Caption::Offline);
    }
    EndToldFaults(engine, ch);
    CloseIfOpen(engine, ch);
    if (tables.ChanOpcEnabled[ch] == True) GoOnAfterFault([&] { engine.publisher.DisconnectOpc(ch); });
    tables.ChanConnected[ch] = False;
  }
}

void CloseTXMWindow(Engine& engine) {
  engine.events.Timer1().SetEnabled(false);
  engine.mainForm.BusyPointer(true);
  CloseLinks(engine);
  engine.startupForm.BusyPointer(true);
  engine.startupForm.EnableContinue(true);
  engine.startupForm.Show();
  engine.startupForm.BusyPointer(false);
  engine.startupForm.FocusContinue();
  engine.mainForm.Hide();
}

void TaskCtrl(Engine& engine, int task) {
  if (task != kEndTask) return;
  engine.tables.Stopped = True;
  for (int ch = 0; ch < kChannels; ++ch) CloseIfOpen(engine, ch);
  engine.startupForm.Unload();
}

void Unload_Tarvex_MainForm(Engine& engine) {
  Tables& tables = engine.tables;
  GoOnAfterFault([&] { engine.log.WriteLog(LogType::Activity, "Tarvex Manager Terminated"); });
  engine.mainForm.ReleaseDrawing();
  CloseTerminalLink(engine);
  GoOnAfterFault([&] { engine.terminal.CloseWorkspaces(); });
  for (int ch = 0; ch <= tables.MaxChannel; ++ch) {
    tables.ChanRxChunk[ch].clear();
    tables.ChanRxBuffer[ch].clear();
    tables.ChanStream[ch].clear();
  }
}
