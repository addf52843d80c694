#include "config/setup/setup_fault.h"

#include <string>
#include <string_view>

#include "core/sentences.h"

namespace {

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

const Refusal* FindRefusal(const RunTimeError& fault) {
  for (const Refusal& refusal : kRefusals) {
    if (refusal.number == fault.Number()) return &refusal;
  }
  return nullptr;
}

}  // namespace

SetupFault KindOfSetupFault(const RunTimeError& fault) {
  if (fault.Number() == ErrorNumber::SerialPortNotOpen) return SetupFault::GoOn;
  return FindRefusal(fault) ? SetupFault::Refused : SetupFault::Critical;
}

void TellSetupFault(const Tables& tables, Log& log, OperatorNotice& notice, int ch, const RunTimeError& fault) {
  if (KindOfSetupFault(fault) == SetupFault::GoOn) return Say(tables, notice, Occasion::ComPortInvalid, ch);
  const Refusal* const refusal = FindRefusal(fault);
  if (refusal == nullptr) {
    const std::string text = "Critical Error: " + std::to_string(fault.Number()) + "  " + fault.Description();
    log.WriteLog(LogType::Error, text);
    return notice.MessageBox(kSetupErrorCaption, text + "\r\nPlease Contact Orvane Technical Services...");
  }
  log.WriteLog(LogType::Error, refusal->logText);
  Say(tables, notice, refusal->occasion, ch);
  notice.MessageBoxWithDetail(kSetupErrorCaption, std::string(refusal->boxText) + "\r\nDisabling Device Now...",
                              fault.Description());
}
