#include "config/port_addresses.h"

#include <algorithm>
#include <exception>
#include <string_view>

#include "config/cfg_text.h"
#include "platform/run_time_error.h"
#include "protocol/number.h"

namespace {

constexpr std::string_view kFileName = "/Tarvex-Ports.Cfg";
constexpr int kFirstPort = 1;
constexpr int kLastPort = 68;

/// What no address may have around it, or nothing: a quote too few or too many may have cut it.
std::string_view QuotesAmiss(std::string_view line) {
  const auto quotes = std::count(line.begin(), line.end(), '"');
  if (quotes == 0) return {};
  if (quotes != 2) return "a double quote is missing or one too many";
  return Trim(line).back() == '"' ? std::string_view{} : "characters stand behind the closing quote";
}

}  // namespace

void PortAddresses::Load(Files& files, const std::string& programFolder) {
  const std::string path = programFolder + std::string(kFileName);
  lines_.clear();
  damageToAllPorts_.clear();
  std::string content;
  std::exception_ptr firstFault;
  try {
    content = files.Read(path);
  } catch (const RunTimeError& fault) {
    damageToAllPorts_ = fault.Description();
    throw;
  }
  std::string_view rest = content;
  for (int line = 1; !rest.empty(); ++line) {
    const std::size_t size = std::min(rest.find('\n'), rest.size() - 1) + 1;
    try {
      TakeLine(rest.substr(0, rest.find_first_of("\r\n")), path, line);
    } catch (const RunTimeError&) {
      if (!firstFault) firstFault = std::current_exception();
    }
    rest.remove_prefix(size);
  }
  if (firstFault) std::rethrow_exception(firstFault);
}

void PortAddresses::TakeLine(std::string_view line, const std::string& path, int lineNumber) {
  CfgReader reader(line, path, lineNumber);
  if (reader.AtEnd()) return;
  std::optional<int> number;
  try {
    number = reader.Integer("port", kFirstPort, kLastPort);
    const std::string address = reader.Text("address");
    if (Trim(address).empty()) reader.Refuse(ErrorNumber::TypeMismatch, "address", "it is empty");
    if (!reader.AtEnd()) {
      reader.Text("end of line");
      reader.Refuse(ErrorNumber::TypeMismatch, "end of line", "a line holds a port and its address");
    }
    if (const auto amiss = QuotesAmiss(line); !amiss.empty()) {
      reader.Refuse(ErrorNumber::TypeMismatch, "address", amiss);
    }
    lines_[*number] = {address};
  } catch (const RunTimeError& fault) {
    if (number) {
      lines_[*number] = {{}, fault.Description()};
    } else if (damageToAllPorts_.empty()) {
      damageToAllPorts_ = fault.Description();
    }
    throw;
  }
}

std::string PortAddresses::AddressOf(int number) const {
  const auto found = lines_.find(number);
  const std::string& damage =
      found == lines_.end() || found->second.damage.empty() ? damageToAllPorts_ : found->second.damage;
  if (!damage.empty()) {
    throw RunTimeError(ErrorNumber::SerialPortInvalid, "COM" + std::to_string(number) + " cannot be opened: " + damage);
  }
  return found == lines_.end() ? "/dev/ttyS" + std::to_string(number - 1) : found->second.address;
}
