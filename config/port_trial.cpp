#include "config/port_trial.h"

#include <cstdlib>
#include <string>
#include <string_view>

#include "core/fixed_tables.h"
#include "platform/run_time_error.h"

namespace {

constexpr std::string_view kBoxCaption = "Tarvex Setup Error";
constexpr std::string_view kInvalidPortSpoken = ",  You have selected an invalid COM port. ";

struct Refusal {
  int number;
  std::string_view logText;
  std::string_view spoken;
  std::string_view boxText;
};

constexpr Refusal kRefusals[] = {
    {ErrorNumber::SerialPortInvalid, "Invalid COM: Port Selected.", kInvalidPortSpoken,
     "The COM: port you have selected is invalid."},
    {ErrorNumber::SerialPortInUse, "COM: Port Already In Use.",
     ",  You have selected a COM port that is already is use. ",
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

/// Takes one step of the trial; false if the trial ends with it. A port that is not open is spoken of, and the
/// trial goes on.
bool PortTrial::Try(int ch, const std::function<void()>& step) {
  try {
    step();
    return true;
  } catch (const RunTimeError& fault) {
    if (fault.Number() == ErrorNumber::SerialPortNotOpen) {
      Speak(ch, kInvalidPortSpoken);
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
      Disable(ch);
      throw;
    }
    Speak(ch, refusal->spoken);
    notice_.MessageBox(kBoxCaption, std::string(refusal->boxText) + "\r\nDisabling Device Now...");
    Disable(ch);
    return false;
  }
}

void PortTrial::Disable(int ch) {
  PutSavedSettingsBack(ch);
  tables_.ChanEnabled[ch] = False;
}

void PortTrial::Speak(int ch, std::string_view reason) {
  if (tables_.SpeechEnabled != True) return;
  const std::string number = DisplayNumber(ch);
  notice_.Speak("Attention!, A Tarvex error has occured on Channel " + number + std::string(reason) +
                "I am restoring default com port settings and disabling channel " + number + "now." +
                "Please contact Orvane Technical Support if you need additional assistance.");
}
