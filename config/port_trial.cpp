#include "config/port_trial.h"

#include <cstdlib>

#include "config/setup/setup_fault.h"

void PortTrial::ApplySettings(int ch) {
  tables_.ChanAppliedPort[ch] = tables_.ChanPort[ch] + 1;
  tables_.ChanAppliedSettings[ch] = tables_.PortSettingsTable[tables_.ChanPortSetup[ch]];
  tables_.ChanAppliedHandshake[ch] = tables_.ChanXonXoff[ch];
  SerialPort& port = ports_.Port(ch);
  if (port.PortOpen()) port.Close();
  port.SetSettings(tables_.ChanAppliedSettings[ch]);
  port.SetCommPort(tables_.ChanAppliedPort[ch]);
  port.SetHandshaking(std::abs(tables_.ChanAppliedHandshake[ch]));
}

void PortTrial::SaveSettings(int ch) {
  const SerialPort& port = ports_.Port(ch);
  tables_.ChanSavedSettings[ch] = port.Settings();
  tables_.ChanSavedPort[ch] = port.CommPort();
  tables_.ChanSavedHandshake[ch] = port.Handshaking();
}

void PortTrial::PutSavedSettingsBack(int ch) {
  SerialPort& port = ports_.Port(ch);
  port.SetSettings(tables_.ChanSavedSettings[ch]);
  port.SetCommPort(tables_.ChanSavedPort[ch]);
  port.SetHandshaking(tables_.ChanSavedHandshake[ch]);
}

void PortTrial::Run(int ch) {
  if (!Try(ch, [&] { SaveSettings(ch); })) return;
  if (!Try(ch, [&] { ApplySettings(ch); })) return;
  if (tables_.ChanEnabled[ch] != True) return;
  Try(ch, [&] {
    SerialPort& port = ports_.Port(ch);
    if (!port.PortOpen()) port.Open();
  });
}

/// Takes one step of the trial; false if the trial ends with it.
bool PortTrial::Try(int ch, const std::function<void()>& step) {
  try {
    step();
    return true;
  } catch (const RunTimeError& fault) {
    return TakeFault(ch, fault);
  }
}

/// Tells a fault; true if the trial goes on. Whatever becomes of the log, the file may not enable a channel whose port
/// was refused.
bool PortTrial::TakeFault(int ch, const RunTimeError& fault) {
  const SetupFault kind = KindOfSetupFault(fault);
  try {
    TellSetupFault(tables_, log_, notice_, ch, fault);
  } catch (const RunTimeError&) {
    if (kind == SetupFault::Refused) Disable(ch);
    throw;
  }
  if (kind == SetupFault::Refused) Disable(ch);
  return kind == SetupFault::GoOn;
}

void PortTrial::Disable(int ch) {
  PutSavedSettingsBack(ch);
  tables_.ChanEnabled[ch] = False;
}
