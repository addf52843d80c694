#include "tools/sim/terminal_network.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>

#include "tools/sim/text.h"

namespace sim {

namespace {

constexpr double kForEver = 1e12;  ///< seconds
constexpr double kUsual = 5;

namespace Status {
const std::string Good = "0";
const std::string InvalidProcess = "-2";
const std::string TooManyProcesses = "-1";
const std::string InvalidField = "2";
const std::string InvalidTerminal = "4";
const std::string InvalidName = "65";
const std::string InvalidLength = "67";
const std::string WriteNotAllowed = "69";
const std::string TimedOut = "10060";
}  // namespace Status

[[noreturn]] void Fail(const std::string& what) { throw std::system_error(errno, std::generic_category(), what); }

Descriptor Listen(const std::string& path) {
  sockaddr_un address{};
  if (path.size() >= sizeof address.sun_path) throw std::system_error(ENAMETOOLONG, std::generic_category(), path);
  address.sun_family = AF_UNIX;
  std::strcpy(address.sun_path, path.c_str());
  Descriptor listener(socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  unlink(path.c_str());
  if (!listener || bind(listener.Get(), reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
      listen(listener.Get(), 4) != 0) {
    Fail(path);
  }
  return listener;
}

std::string Hex(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string hex;
  for (const char c : text) {
    hex += kDigits[static_cast<unsigned char>(c) / 16];
    hex += kDigits[static_cast<unsigned char>(c) % 16];
  }
  return hex;
}

std::string FromHex(std::string_view hex) {
  const auto digit = [](char c) { return c >= 'a' ? c - 'a' + 10 : c - '0'; };
  std::string text;
  for (; hex.size() >= 2; hex.remove_prefix(2)) text += static_cast<char>(16 * digit(hex[0]) + digit(hex[1]));
  return text;
}

}  // namespace

TerminalNetwork::TerminalNetwork(const std::vector<TerminalSettings>& settings, const std::string& path)
    : faults_(settings.size()), path_(path) {
  for (const TerminalSettings& terminal : settings) terminals_.emplace_back(terminal);
  if (!path.empty()) listener_ = Listen(path);
}

TerminalNetwork::~TerminalNetwork() {
  if (listener_) unlink(path_.c_str());
}

Terminal* TerminalNetwork::Find(int node) {
  const auto found = std::find_if(terminals_.begin(), terminals_.end(),
                                  [&](const Terminal& terminal) { return terminal.Settings().node == node; });
  return found == terminals_.end() ? nullptr : &*found;
}

void TerminalNetwork::AddWatches(std::vector<pollfd>& watches) const {
  if (listener_) watches.push_back({listener_.Get(), POLLIN, 0});
  for (const Caller& caller : callers_) watches.push_back({caller.socket.Get(), POLLIN, 0});
}

void TerminalNetwork::Run(double now) {
  now_ = now;
  for (Terminal& terminal : terminals_) terminal.Run(now);
  if (!listener_) return;
  for (int socket = 0; (socket = accept4(listener_.Get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC)) >= 0;) {
    callers_.push_back({Descriptor(socket), {}, false});
  }
  callers_.remove_if([this](Caller& caller) { return !Serve(caller); });
}

/// False when the caller has gone.
bool TerminalNetwork::Serve(Caller& caller) {
  char part[4096];
  ssize_t size = 0;
  while ((size = recv(caller.socket.Get(), part, sizeof part, 0)) > 0) {
    caller.received.append(part, static_cast<std::size_t>(size));
  }
  const bool gone = size == 0 || (errno != EAGAIN && errno != EWOULDBLOCK);
  registered_ = caller.registered;
  for (std::size_t end = 0; (end = caller.received.find('\n')) != std::string::npos;) {
    const auto reply = Answer(caller.received.substr(0, end));
    caller.received.erase(0, end + 1);
    if (reply) send(caller.socket.Get(), (*reply + "\n").data(), reply->size() + 1, MSG_NOSIGNAL);
  }
  caller.registered = registered_;
  return !gone;
}

std::optional<std::string> TerminalNetwork::Answer(const std::string& request) {
  const std::vector<std::string_view> words = Words(request);
  if (words.empty()) return Status::InvalidField;
  if (words[0] == "REGISTER") {
    if (registered_) return Status::TooManyProcesses;
    registered_ = true;
    return Status::Good;
  }
  if (!registered_) return Status::InvalidProcess;
  if (words[0] == "CLOSE") {
    registered_ = false;
    return Status::Good;
  }
  const bool key = words[0] == "KEY";
  const std::string_view path = words.size() > 1 ? words[1] : std::string_view{};
  const auto node = key                      ? WholeNumber(path)
                    : path.starts_with("/v") ? WholeNumber(path.substr(2, path.find('/', 2) - 2))
                                             : std::nullopt;
  Terminal* const terminal = node ? Find(*node) : nullptr;
  if (terminal == nullptr) return Status::InvalidTerminal;
  const Fault& fault = faults_[static_cast<std::size_t>(terminal - terminals_.data())];
  if (now_ < fault.silentUntil) return std::nullopt;
  if (now_ < fault.pulledUntil) return Status::TimedOut;
  if (key && words.size() == 4) {
    terminal->Press(WholeNumber(words[3]).value_or(0));
    return Status::Good;
  }
  const std::string field(path.substr(std::min(path.size(), path.find('/', 2)) + (path.find('/', 2) < path.size())));
  const auto length = words.size() > 2 ? WholeNumber(words[2]) : std::nullopt;
  if (!length || *length < 1) return Status::InvalidLength;
  const std::optional<std::string> text = terminal->Read(field);
  if (!text) return Status::InvalidName;
  if (words[0] == "READ") return Status::Good + " " + Hex(*text);
  if (words[0] != "WRITE") return Status::InvalidField;
  return terminal->Write(field, words.size() > 3 ? FromHex(words[3]) : std::string()) ? Status::Good
                                                                                      : Status::WriteNotAllowed;
}

std::optional<std::string> TerminalNetwork::Obey(std::string_view line) {
  const std::vector<std::string_view> words = Words(line);
  if (words.size() < 2 || !words[1].starts_with('v')) return std::nullopt;
  const auto node = WholeNumber(words[1].substr(1));
  Terminal* const terminal = node ? Find(*node) : nullptr;
  if (terminal == nullptr) return "This plant has no terminal " + std::string(words[1]) + ".\n";
  Fault& fault = faults_[static_cast<std::size_t>(terminal - terminals_.data())];
  const double until = now_ + (words.size() > 2 ? Seconds(words[2]).value_or(kUsual) : kUsual);
  if (words[0] == "pull") {
    fault.pulledUntil = kForEver;
  } else if (words[0] == "plug") {
    fault = {};
  } else if (words[0] == "silence") {
    fault.silentUntil = until;
  } else if (words[0] != "show") {
    return "A terminal knows pull, plug, silence and show.\n";
  }
  return words[0] == "show" ? terminal->Report() + "\n" : std::string(words[1]) + ": " + std::string(words[0]) + "\n";
}

}  // namespace sim
