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

}  // namespace

void PortAddresses::Load(Files& files, const std::string& programFolder) {
  const std::string path = programFolder + std::string(kFileName);
  addresses_.clear();
  const std::string content = files.Read(path);
  std::exception_ptr firstFault;
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
  const int number = reader.Integer("port", kFirstPort, kLastPort);
  const std::string address = reader.Text("address");
  if (Trim(address).empty()) reader.Refuse(ErrorNumber::TypeMismatch, "address", "it is empty");
  if (!reader.AtEnd()) {
    reader.Text("end of line");
    reader.Refuse(ErrorNumber::TypeMismatch, "end of line", "a line holds a port and its address");
  }
  addresses_[number] = address;
}

std::string PortAddresses::AddressOf(int number) const {
  const auto found = addresses_.find(number);
  return found == addresses_.end() ? "/dev/ttyS" + std::to_string(number - 1) : found->second;
}
