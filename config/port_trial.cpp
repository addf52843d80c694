#include "config/port_trial.h"

#include <cstdlib>
#include <string>
#include <string_view>

#include "core/sentences.h"

namespace {

constexpr std::string_view kBoxCaption = "Tarvex Setup Error";

struct Refusal {
  int number;
  std::string_view logText;
  Occasion occasion;
  std::string_view boxText;
};

constexpr Refusal kRefusals[] = {
    {ErrorNumber::SerialPortInvalid, "Invalid COM: Port Selected.", Occasion::ComPortInvalid,
     "The COM: port you have selected is invalid."},
    {ErrorNumber::SerialPortInUse, "COM: Port Already In Use.", Occasion::ComPortInUse,
     "The COM: port you have selected is already in use..."},
};

const Refusal* FindRefusal(int number) {
  for (const Refusal& refusal : kRefusals) {
    if (refusal.number == number) return &refusal;
  }
  return nullptr;
}

}  // namespace

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

/// Tells a fault; true if the trial goes on. A port that is not open is only spoken of.
bool PortTrial::TakeFault(int ch, const RunTimeError& fault) {
  if (fault.Number() == ErrorNumber::SerialPortNotOpen) {
    Say(tables_, notice_, Occasion::ComPortInvalid, ch);
    return true;
  }
  const Refusal* const refusal = FindRefusal(fault.Number());
  if (refusal == nullptr) {
    const std::string text = "Critical Error: " + std::to_string(fault.Number()) + "  " + fault.Description();
    log_.WriteLog(LogType::Error, text);
    notice_.MessageBox(kBoxCaption, text + "\r\nPlease Contact Orvane Technical Services...");
    return false;
  }
  try {
    log_.WriteLog(LogType::Error, refusal->logText);
  } catch (const RunTimeError&) {
    Disable(ch);  // whatever becomes of the log, the file may not enable a channel without a port
    throw;
  }
  Say(tables_, notice_, refusal->occasion, ch);
  notice_.MessageBox(kBoxCaption, std::string(refusal->boxText) + "\r\nDisabling Device Now...");
  Disable(ch);
  return false;
}

void PortTrial::Disable(int ch) {
  PutSavedSettingsBack(ch);
  tables_.ChanEnabled[ch] = False;
}
